#pragma once

#include <Eigen/Core>
#include <boost/shared_ptr.hpp>

#include "scene/SceneExport.h"
#include "scene/geometry/StreamSemantic.h"

namespace vantorix::scene {

/// One value of one semantic of one vertex.
///
/// Ownership: a copy shares the floats and does not own them. The floats of an element that was
/// made by create() live as long as any shared pointer to that element; a caller who fills the
/// record by hand keeps the floats alive.
struct VANTORIX_SCENE_EXPORT VertexElement {
    /// An element with a copy of @p size floats; a null @p values stores zeros.
    static boost::shared_ptr<VertexElement> create(StreamSemantic semantic, int size,
                                                   const float* values);

    /// The first four floats; missing ones are taken from (0, 0, 0, 1).
    Eigen::Vector4f toEigenVector() const;

    StreamSemantic semantic = INVALID;
    int size = 0;             ///< Number of floats in values.
    float* values = nullptr;  ///< Array of size floats.
};

}  // namespace vantorix::scene
