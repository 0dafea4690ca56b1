#pragma once

#include <cmath>
#include <string>
#include <vector>

#include <Eigen/Geometry>
#include <boost/make_shared.hpp>

#include "scene/animation/Animation.h"
#include "scene/animation/Sampler.h"
#include "scene/geometry/Stream.h"
#include "scene/graph/Node.h"

namespace vantorix::test {

using Floats = std::vector<float>;

inline boost::shared_ptr<scene::Stream> makeStream(const std::string& parameter, int stride,
                                                   const Floats& values, int count) {
    const auto stream = boost::make_shared<scene::Stream>(parameter + "-stream", stride, true);
    stream->params.emplace_back(parameter, "float");
    stream->values = values;
    stream->count = count;
    return stream;
}

/// The streams of one sampler, kept for edits.
struct Keys {
    /// Linear keys at @p times with @p stride values each.
    Keys(const Floats& times, int stride, const Floats& values)
        : input(makeStream("TIME", 1, times, static_cast<int>(times.size()))),
          output(makeStream("VALUE", stride, values, static_cast<int>(times.size()))),
          names(makeStream("INTERPOLATION", 1, {}, static_cast<int>(times.size()))),
          sampler(boost::make_shared<scene::Sampler>("sampler")) {
        names->stringValues.assign(times.size(), "LINEAR");
        sampler->addInput("INPUT", input);
        sampler->addInput("OUTPUT", output);
        sampler->addInput("INTERPOLATION", names);
    }

    boost::shared_ptr<scene::Stream> input, output, names;
    boost::shared_ptr<scene::Sampler> sampler;
};

inline boost::shared_ptr<scene::Animation> makeAnimation(const std::string& id = "animation") {
    return boost::make_shared<scene::Animation>(id, "");
}

template <class Element, class... Arguments>
boost::shared_ptr<Element> addElement(scene::Node& node, const std::string& sid,
                                      const Arguments&... arguments) {
    const auto element = boost::make_shared<Element>(arguments...);
    element->setSid(sid);
    node.addTransformation(element);
    return element;
}

inline Eigen::Matrix4f movedBy(float x, float y, float z) {
    return Eigen::Affine3f(Eigen::Translation3f(x, y, z)).matrix();
}

/// The 16 floats of @p matrix row by row.
inline Floats rowsOf(const Eigen::Matrix4f& matrix) {
    const Eigen::Matrix4f rows = matrix.transpose();
    return Floats(rows.data(), rows.data() + rows.size());
}

/// Equal up to rounding; how far a NaN spreads is not compared.
inline bool isNear(const Eigen::Matrix4f& left, const Eigen::Matrix4f& right) {
    if (left.hasNaN() || right.hasNaN()) return left.hasNaN() == right.hasNaN();
    for (Eigen::Index i = 0; i < left.size(); ++i) {
        const float a = left.data()[i];
        const float b = right.data()[i];
        if (!(std::abs(a - b) <= 2e-3f * (1.0f + std::abs(a)))) return false;
    }
    return true;
}

}  // namespace vantorix::test
