#pragma once

#include "apps/import/ModelDocument.h"
#include "apps/import/WorkerMessages.h"

/// A sound document with something of nearly everything: a square of two materials in two meshes,
/// a second node that shares the first mesh, a camera with a place of its own and a light.
vantorix::apps::import::ModelDocument sampleDocument();

/// The sample with a leg below its root, of a quad and two triangles, that follows the joints "hip"
/// and "knee". Its vertices 3, 4 and 5 stand at the same place, 4 with influences of its own. The
/// clip "bend" of two seconds turns the knee and raises the hip.
vantorix::apps::import::ModelDocument skinnedDocument();

/// Of the skinned document.
vantorix::apps::import::WorkerAnswer sampleAnswer();
