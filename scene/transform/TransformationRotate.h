#pragma once

#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationElement.h"

namespace vantorix::core::utils {
class Matrix;
}

namespace vantorix::scene {

/// A rotation about an axis, the angle in degrees. An axis without components turns nothing.
/// Writing through a returned reference does not count as an update.
class VANTORIX_SCENE_EXPORT TransformationRotate : public TransformationElement {
public:
    /// Angle 0 and an axis without components; counts as updated.
    TransformationRotate();
    TransformationRotate(const core::utils::Vector<float, 3>& axis, float angle);

    boost::shared_ptr<ITransformation> clone() const override;

    core::utils::Vector<float, 3>& getRotationAxis();
    const core::utils::Vector<float, 3>& getRotationAxis() const;
    float getAngle() const;

    void setRotationAxis(const core::utils::Vector<float, 3>& axis);
    void setRotationAxis(float x, float y, float z);
    void setAngle(float angle);

    /// Composes the stored rotation (on the left) with one of @p angle degrees about the negated
    /// @p axis: turning about the element's own axis subtracts from the stored angle.
    void rotateBy(const core::utils::Vector<float, 3>& axis, float angle);

    /// Takes axis and angle from the rotation part of @p matrix. Deliberate: the angle is stored in
    /// radians. A matrix that does not turn gives axis (1, 0, 0) and angle 0; of an exact half turn
    /// the axis cannot be told and has length 0.
    void setFromMatrix(const core::utils::Matrix& matrix);

private:
    core::utils::Vector<float, 3> rotationAxis_;
    float angle_;
};

}  // namespace vantorix::scene
