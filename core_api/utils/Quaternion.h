#pragma once

#include "core_api/CoreExport.h"
#include "core_api/utils/Vector.h"

namespace vantorix::core::utils {

/// A rotation, given and read as an axis and an angle in degrees.
class VANTORIX_CORE_EXPORT Quaternion {
public:
    /// Turns by @p angle degrees about @p axis, of any length. Without a direction (no components,
    /// all zero, or not finite) or with an angle that is not finite it turns nothing.
    Quaternion(const Vector<float, 3>& axis, float angle);

    /// The rotation that applies @p other first.
    Quaternion operator*(const Quaternion& other) const;

    /// The unit axis (0 to 2) and the angle in degrees (3), at least 0 and below 360. A rotation
    /// that turns nothing is (1, 0, 0) and 0.
    Vector<float, 4> toAxisAngle() const;

private:
    Quaternion(double w, double x, double y, double z);

    double w_, x_, y_, z_;
};

}  // namespace vantorix::core::utils
