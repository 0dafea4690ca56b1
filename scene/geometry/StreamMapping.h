#pragma once

#include <string>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {

class Stream;

/// Binds a stream to a meaning and to a slot of a primitive's index records.
/// Copies share the stream.
class VANTORIX_SCENE_EXPORT StreamMapping {
public:
    /// An unknown semantic name gives an INVALID mapping.
    StreamMapping(const std::string& semantic, boost::shared_ptr<Stream> stream, int offset);
    StreamMapping(StreamSemantic semantic, boost::shared_ptr<Stream> stream, int offset);
    StreamMapping(const StreamMapping& other);
    StreamMapping& operator=(const StreamMapping& other);
    virtual ~StreamMapping();

    StreamSemantic semantic;
    boost::shared_ptr<Stream> stream;  ///< May be empty.
    int offset;                        ///< Slot in the index record; mappings may share one.
};

}  // namespace vantorix::scene
