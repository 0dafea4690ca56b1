#include "scene/graph/LogFile.h"

#include <boost/make_shared.hpp>

#include "core_api/logger/BasicDecorator.h"
#include "core_api/logger/ConsoleWriter.h"
#include "core_api/logger/FileWriter.h"
#include "core_api/logger/FileWriterFactory.h"
#include "core_api/logger/Logger.h"

namespace vantorix::scene {

using core::logger::BasicDecorator;

void writeToFile(core::logger::Logger& logger, const std::string& fileName) {
    const auto writer = core::logger::FileWriterFactory::getInstance()->getFileWriter(fileName);
    writer->setDecorator(boost::make_shared<BasicDecorator>());
    logger.addWriter(writer);
}

void writeToConsole(core::logger::Logger& logger) {
    const auto writer = boost::make_shared<core::logger::ConsoleWriter>();
    writer->setDecorator(boost::make_shared<BasicDecorator>());
    logger.addWriter(writer);
}

}  // namespace vantorix::scene
