#include "bench/spatial/TorusRays.h"

#include <random>

#include <Eigen/Core>

namespace vantorix::bench {

std::vector<StraightLine> makeRays() {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> between(-1, 1);
    std::vector<StraightLine> rays;
    while (rays.size() < 4096) {
        const Eigen::Vector3f from(between(random), between(random), between(random));
        const Eigen::Vector3f to(4 * between(random), 4 * between(random), between(random));
        const Eigen::Vector3f origin = from.normalized() * 10;
        const Eigen::Vector3f direction = to - origin;
        rays.push_back(
            {{origin.x(), origin.y(), origin.z()}, {direction.x(), direction.y(), direction.z()}});
    }
    return rays;
}

}  // namespace vantorix::bench
