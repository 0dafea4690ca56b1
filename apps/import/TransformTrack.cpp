#include "apps/import/TransformTrack.h"

#include <algorithm>
#include <cmath>

namespace vantorix::apps::import {
namespace {

using Eigen::Quaternionf;
using Eigen::Vector3f;

constexpr float tolerance = 1e-5f;

Vector3f valueOf(const ModelKeys& keys, std::size_t key, const Vector3f&) {
    return Vector3f(&keys.values[key * 3]);
}

Quaternionf valueOf(const ModelKeys& keys, std::size_t key, const Quaternionf&) {
    return Quaternionf(&keys.values[key * 4]);
}

Vector3f between(const Vector3f& a, const Vector3f& b, float fraction) {
    return a + (b - a) * fraction;
}

Quaternionf between(const Quaternionf& a, const Quaternionf& b, float fraction) {
    return a.slerp(fraction, b);
}

/// Reads the value of one kind at times that only grow.
template <typename Value>
class Cursor {
public:
    Cursor(const ModelKeys& keys, const Value& otherwise) : keys_(keys), otherwise_(otherwise) {}

    Value at(float time) {
        const auto& times = keys_.times;
        if (times.empty()) return otherwise_;
        while (next_ < times.size() && times[next_] < time) ++next_;
        if (next_ == 0) return valueOf(keys_, 0, otherwise_);
        if (next_ == times.size()) return valueOf(keys_, next_ - 1, otherwise_);
        const float start = times[next_ - 1];
        return between(valueOf(keys_, next_ - 1, otherwise_), valueOf(keys_, next_, otherwise_),
                       (time - start) / (times[next_] - start));
    }

private:
    const ModelKeys& keys_;
    Value otherwise_;
    std::size_t next_ = 0;  ///< The first key not before the time.
};

template <typename Value, typename Test>
bool allKeys(const ModelKeys& keys, const Value& otherwise, Test test) {
    for (std::size_t key = 0; key < keys.times.size(); ++key) {
        if (!test(valueOf(keys, key, otherwise))) return false;
    }
    return true;
}

bool staysAt(const ModelKeys& keys, const Vector3f& rest) {
    return allKeys(keys, rest, [&rest](const Vector3f& value) {
        return (value - rest).norm() <= tolerance * std::max(1.0f, rest.norm());
    });
}

bool staysAt(const ModelKeys& keys, const Quaternionf& rest) {
    return allKeys(keys, rest, [&rest](const Quaternionf& value) {
        return 1.0f - std::abs(value.dot(rest)) <= tolerance * tolerance;
    });
}

void addTimes(const ModelKeys& keys, std::vector<float>& times) {
    times.insert(times.end(), keys.times.begin(), keys.times.end());
}

std::vector<float> timesOf(const ModelChannel& channel, TransformTrack::Kind kind, float duration) {
    std::vector<float> times;
    if (kind != TransformTrack::SCALE) addTimes(channel.positions, times);
    if (kind == TransformTrack::MATRIX) addTimes(channel.rotations, times);
    if (kind != TransformTrack::TRANSLATE) addTimes(channel.scales, times);
    std::sort(times.begin(), times.end());
    times.erase(std::unique(times.begin(), times.end()), times.end());
    const float first = times.empty() ? 0.0f : std::min(times.front(), 0.0f);
    times.insert(times.begin(), first - 1.0f);
    if (times.back() < duration) times.push_back(duration);
    return times;
}

void appendMatrix(const Vector3f& translation, const Quaternionf& rotation, const Vector3f& scale,
                  std::vector<float>& values) {
    Eigen::Matrix<float, 4, 4, Eigen::RowMajor> matrix;
    matrix.setIdentity();
    matrix.topLeftCorner<3, 3>() = rotation.toRotationMatrix() * scale.asDiagonal();
    matrix.topRightCorner<3, 1>() = translation;
    values.insert(values.end(), matrix.data(), matrix.data() + matrix.size());
}

void appendVector(const Vector3f& vector, std::vector<float>& values) {
    values.insert(values.end(), vector.data(), vector.data() + vector.size());
}

}  // namespace

RestPose::RestPose(const std::array<float, 16>& elements) {
    const Eigen::Map<const Eigen::Matrix4f> matrix(elements.data());
    const Eigen::Matrix3f linear = matrix.topLeftCorner<3, 3>();
    translation = matrix.topRightCorner<3, 1>();
    scale = linear.colwise().norm();
    const bool isRegular = (scale.array() > 1e-20f).all() && scale.allFinite();
    if (!isRegular) {
        rotation.setIdentity();
        isExact = false;
        return;
    }
    const Eigen::Matrix3f turn = linear * scale.cwiseInverse().asDiagonal();
    rotation = Quaternionf(turn).normalized();
    isExact = (rotation.toRotationMatrix() - turn).cwiseAbs().maxCoeff() <= tolerance;
}

TransformTrack::Kind kindOf(const ModelChannel& channel, const RestPose& rest) {
    if (!rest.isExact) return TransformTrack::MATRIX;
    const bool isUnscaled = staysAt(channel.scales, Vector3f::Ones()) &&
                            (rest.scale - Vector3f::Ones()).norm() <= tolerance;
    const bool isUnturned = staysAt(channel.rotations, Quaternionf::Identity()) &&
                            1.0f - std::abs(rest.rotation.w()) <= tolerance * tolerance;
    if (isUnscaled && isUnturned) return TransformTrack::TRANSLATE;
    const bool isInPlace =
        staysAt(channel.positions, rest.translation) && staysAt(channel.rotations, rest.rotation);
    return isInPlace ? TransformTrack::SCALE : TransformTrack::MATRIX;
}

TransformTrack makeTrack(const ModelChannel& channel, const RestPose& rest,
                         TransformTrack::Kind kind, float duration) {
    TransformTrack track{kind, timesOf(channel, kind, duration), {}};
    Cursor<Vector3f> positions(channel.positions, rest.translation);
    Cursor<Quaternionf> rotations(channel.rotations, rest.rotation);
    Cursor<Vector3f> scales(channel.scales, rest.scale);
    for (const auto time : track.times) {
        if (kind == TransformTrack::TRANSLATE) {
            appendVector(positions.at(time), track.values);
        } else if (kind == TransformTrack::SCALE) {
            appendVector(scales.at(time), track.values);
        } else {
            appendMatrix(positions.at(time), rotations.at(time), scales.at(time), track.values);
        }
    }
    return track;
}

}  // namespace vantorix::apps::import
