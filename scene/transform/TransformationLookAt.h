#pragma once

#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationElement.h"

namespace vantorix::scene {

/// A view from one point towards another. Nodes list it but are not moved by it.
/// A new element counts as updated. Writing through a returned reference does not.
class VANTORIX_SCENE_EXPORT TransformationLookAt : public TransformationElement {
public:
    TransformationLookAt(const core::utils::Vector<float, 3>& eye,
                         const core::utils::Vector<float, 3>& interest,
                         const core::utils::Vector<float, 3>& up);

    boost::shared_ptr<ITransformation> clone() const override;

    core::utils::Vector<float, 3>& getEyePosition();
    const core::utils::Vector<float, 3>& getEyePosition() const;
    core::utils::Vector<float, 3>& getInterestPoint();
    const core::utils::Vector<float, 3>& getInterestPoint() const;
    core::utils::Vector<float, 3>& getUpAxis();
    const core::utils::Vector<float, 3>& getUpAxis() const;

    void setEyePosition(const core::utils::Vector<float, 3>& eye);
    void setInterestPoint(const core::utils::Vector<float, 3>& interest);
    void setUpAxis(const core::utils::Vector<float, 3>& up);

private:
    core::utils::Vector<float, 3> eyePosition_;
    core::utils::Vector<float, 3> interestPoint_;
    core::utils::Vector<float, 3> upAxis_;
};

}  // namespace vantorix::scene
