#pragma once

#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"

namespace vantorix::scene {

class IGeometry;
class Stream;

/// The data of a deformation by blending: a shared source geometry and streams of its own.
class VANTORIX_SCENE_EXPORT Morph {
public:
    explicit Morph(boost::shared_ptr<IGeometry> sourceGeometry);
    Morph(const Morph& other);
    Morph& operator=(const Morph& other);
    virtual ~Morph();

    boost::shared_ptr<IGeometry> getSourceGeometry() const;

    const std::vector<Stream>& getStreams() const;
    void setStreams(const std::vector<Stream>& streams);

private:
    boost::shared_ptr<IGeometry> sourceGeometry_;
    std::vector<Stream> streams_;
};

}  // namespace vantorix::scene
