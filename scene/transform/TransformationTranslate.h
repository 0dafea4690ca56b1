#pragma once

#include "core_api/utils/Vector.h"

#include "scene/transform/TransformationElement.h"

namespace vantorix::scene {

/// A shift. Writing through a returned reference does not count as an update.
class VANTORIX_SCENE_EXPORT TransformationTranslate : public TransformationElement {
public:
    /// (0, 0, 0); counts as updated, unlike an element made from values.
    TransformationTranslate();
    explicit TransformationTranslate(const core::utils::Vector<float, 3>& translation);

    boost::shared_ptr<ITransformation> clone() const override;

    core::utils::Vector<float, 3>& getTranslation();
    const core::utils::Vector<float, 3>& getTranslation() const;

    void setTranslation(const core::utils::Vector<float, 3>& translation);

private:
    core::utils::Vector<float, 3> translation_;
};

}  // namespace vantorix::scene
