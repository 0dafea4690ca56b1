#pragma once

/// Everything of vantorix_core: events, logging, clocks and math types.

#include "core_api/event/Event.h"
#include "core_api/event/EventBase.h"
#include "core_api/event/EventData.h"
#include "core_api/event/EventListener.h"
#include "core_api/event/EventManager.h"
#include "core_api/event/EventType.h"
#include "core_api/logger/BasicDecorator.h"
#include "core_api/logger/ConsoleWriter.h"
#include "core_api/logger/FileWriter.h"
#include "core_api/logger/FileWriterFactory.h"
#include "core_api/logger/IDecorator.h"
#include "core_api/logger/IWriter.h"
#include "core_api/logger/Logger.h"
#include "core_api/system/IClock.h"
#include "core_api/system/MillisecClock.h"
#include "core_api/utils/Matrix.h"
#include "core_api/utils/Quaternion.h"
#include "core_api/utils/Vector.h"
