#pragma once

#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationElement.h"

namespace vantorix::scene {

/// A shear by an angle in degrees. Nodes list it but are not moved by it.
/// A new element counts as updated. Writing through a returned reference does not.
class VANTORIX_SCENE_EXPORT TransformationSkew : public TransformationElement {
public:
    TransformationSkew(float angle, const core::utils::Vector<float, 3>& rotation,
                       const core::utils::Vector<float, 3>& translation);

    boost::shared_ptr<ITransformation> clone() const override;

    float getAngle() const;
    core::utils::Vector<float, 3>& getRotation();
    const core::utils::Vector<float, 3>& getRotation() const;
    core::utils::Vector<float, 3>& getTranslation();
    const core::utils::Vector<float, 3>& getTranslation() const;

    void setAngle(float angle);
    void setRotation(const core::utils::Vector<float, 3>& rotation);
    void setTranslation(const core::utils::Vector<float, 3>& translation);

private:
    float angle_;
    core::utils::Vector<float, 3> rotation_;
    core::utils::Vector<float, 3> translation_;
};

}  // namespace vantorix::scene
