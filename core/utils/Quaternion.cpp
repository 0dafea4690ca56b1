#include "core_api/utils/Quaternion.h"

#include <cmath>

namespace vantorix::core::utils {
namespace {

constexpr double degreesPerRadian = 57.295779513082320877;
constexpr double rounding = 1e-12;  // Sine of half an angle below which nothing is left of it.

}  // namespace

Quaternion::Quaternion(double w, double x, double y, double z) : w_(w), x_(x), y_(y), z_(z) {}

Quaternion::Quaternion(const Vector<float, 3>& axis, float angle) : Quaternion(1, 0, 0, 0) {
    if (axis.size() != 3 || !std::isfinite(angle)) return;
    const double x = axis[0], y = axis[1], z = axis[2];
    const double length = std::sqrt(x * x + y * y + z * z);
    if (!(length > 0) || !std::isfinite(length)) return;
    // The remainder is exact, so that whole turns vanish.
    const double half = std::fmod(static_cast<double>(angle), 720.0) / degreesPerRadian / 2;
    const double scale = std::sin(half) / length;
    *this = Quaternion(std::cos(half), x * scale, y * scale, z * scale);
}

Quaternion Quaternion::operator*(const Quaternion& other) const {
    return Quaternion(w_ * other.w_ - x_ * other.x_ - y_ * other.y_ - z_ * other.z_,
                      w_ * other.x_ + x_ * other.w_ + y_ * other.z_ - z_ * other.y_,
                      w_ * other.y_ - x_ * other.z_ + y_ * other.w_ + z_ * other.x_,
                      w_ * other.z_ + x_ * other.y_ - y_ * other.x_ + z_ * other.w_);
}

Vector<float, 4> Quaternion::toAxisAngle() const {
    const double sine = std::sqrt(x_ * x_ + y_ * y_ + z_ * z_);
    if (!(sine > rounding)) return Vector<float, 4>(1, 0, 0, 0);
    const double angle = 2 * std::atan2(sine, w_) * degreesPerRadian;
    return Vector<float, 4>(x_ / sine, y_ / sine, z_ / sine, angle);
}

}  // namespace vantorix::core::utils
