#pragma once

#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationElement.h"

namespace vantorix::scene {

/// Factors along the x, y and z axis. Writing through a returned reference does not count as an
/// update.
class VANTORIX_SCENE_EXPORT TransformationScale : public TransformationElement {
public:
    /// (1, 1, 1); counts as updated, unlike an element made from values.
    TransformationScale();
    explicit TransformationScale(const core::utils::Vector<float, 3>& scale);
    TransformationScale(float x, float y, float z);

    boost::shared_ptr<ITransformation> clone() const override;

    core::utils::Vector<float, 3>& getScale();
    const core::utils::Vector<float, 3>& getScale() const;

    void setScale(const core::utils::Vector<float, 3>& scale);

    /// @name Components
    /// @throws std::out_of_range when the stored vector has no components.
    /// @{
    float getScaleX() const;
    float getScaleY() const;
    float getScaleZ() const;
    void setScaleX(float x);
    void setScaleY(float y);
    void setScaleZ(float z);
    /// @}

private:
    core::utils::Vector<float, 3> scale_;
};

}  // namespace vantorix::scene
