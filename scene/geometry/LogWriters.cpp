#include "scene/geometry/LogWriters.h"

#include <boost/make_shared.hpp>

#include "core_api/logger/BasicDecorator.h"
#include "core_api/logger/ConsoleWriter.h"
#include "core_api/logger/FileWriter.h"
#include "core_api/logger/FileWriterFactory.h"
#include "core_api/logger/Logger.h"

namespace vantorix::scene {
namespace {

boost::shared_ptr<core::logger::IDecorator> sharedDecorator() {
    static const auto decorator = boost::make_shared<core::logger::BasicDecorator>();
    return decorator;
}

boost::shared_ptr<core::logger::IWriter> makeConsoleWriter() {
    const auto writer = boost::make_shared<core::logger::ConsoleWriter>();
    writer->setDecorator(sharedDecorator());
    return writer;
}

}  // namespace

void addFileWriter(core::logger::Logger& logger, const std::string& fileName) {
    const auto writer = core::logger::FileWriterFactory::getInstance()->getFileWriter(fileName);
    writer->setDecorator(sharedDecorator());
    logger.addWriter(writer);
}

void addConsoleWriter(core::logger::Logger& logger) {
    static const auto writer = makeConsoleWriter();
    logger.addWriter(writer);
}

}  // namespace vantorix::scene
