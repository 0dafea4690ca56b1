#pragma once

#include "apps/import/ModelDocument.h"
#include "apps/import/WorkerMessages.h"

/// A sound document with something of everything: a square of two materials in two meshes, a
/// second node that shares the first mesh, a camera with a place of its own and a light.
vantorix::apps::import::ModelDocument sampleDocument();

vantorix::apps::import::WorkerAnswer sampleAnswer();
