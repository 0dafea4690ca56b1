#pragma once

#include "core_api/utils/Matrix.h"

#include "scene/transform/TransformationElement.h"

namespace vantorix::scene {

/// A whole 4x4 matrix, column by column for column vectors: the translation is at 12, 13 and 14.
class VANTORIX_SCENE_EXPORT TransformationMatrix : public TransformationElement {
public:
    /// The identity; counts as updated, unlike an element made from values.
    TransformationMatrix();

    /// Copies 16 floats; a null pointer gives the identity.
    explicit TransformationMatrix(const float* values);
    explicit TransformationMatrix(const core::utils::Matrix& matrix);

    boost::shared_ptr<ITransformation> clone() const override;

    core::utils::Matrix getMatrix() const;

    /// The float at a * 4 + b; 0 when @p a or @p b is 4 or more.
    float getValue(unsigned int a, unsigned int b) const;

    /// Copies 16 floats; a null pointer is ignored.
    void setMatrix(const float* values);
    void setMatrix(const core::utils::Matrix& matrix);

private:
    core::utils::Matrix matrix_;
};

}  // namespace vantorix::scene
