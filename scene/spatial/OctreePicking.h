#pragma once

#include <mutex>
#include <optional>
#include <utility>
#include <vector>

#include <boost/shared_ptr.hpp>

#include "scene/spatial/PickHit.h"
#include "scene/spatial/PickIndex.h"
#include "scene/spatial/SceneFaces.h"

namespace vantorix::scene {

class Ray;

/// Casts rays at gathered faces. The index over them is made by the first ray.
class OctreePicking {
public:
    explicit OctreePicking(boost::shared_ptr<const SceneFaces> faces) : faces_(std::move(faces)) {}

    std::optional<PickHit> pick(const Ray& ray);
    std::vector<PickHit> pickAll(const Ray& ray);

private:
    const PickIndex& index();
    PickHit describe(const PickIndex::Hit& hit, const Ray& ray) const;

    boost::shared_ptr<const SceneFaces> faces_;
    std::once_flag isMade_;
    PickIndex index_;
};

}  // namespace vantorix::scene
