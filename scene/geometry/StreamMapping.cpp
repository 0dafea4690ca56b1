#include "scene/geometry/StreamMapping.h"

#include <utility>

namespace vantorix::scene {

StreamMapping::StreamMapping(const std::string& semanticName,
                             boost::shared_ptr<Stream> mappedStream, int slot)
    : StreamMapping(streamSemanticFromString(semanticName), std::move(mappedStream), slot) {}

StreamMapping::StreamMapping(StreamSemantic meaning, boost::shared_ptr<Stream> mappedStream,
                             int slot)
    : semantic(meaning), stream(std::move(mappedStream)), offset(slot) {}

StreamMapping::StreamMapping(const StreamMapping& other) = default;

StreamMapping& StreamMapping::operator=(const StreamMapping& other) = default;

StreamMapping::~StreamMapping() = default;

}  // namespace vantorix::scene
