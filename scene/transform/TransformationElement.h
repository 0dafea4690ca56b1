#pragma once

#include <string>

#include "scene/transform/ITransformation.h"

namespace vantorix::scene {

/// What all transformation elements have in common: type, SID and the updated flag.
class VANTORIX_SCENE_EXPORT TransformationElement : public ITransformation {
public:
    TransformationElement(const TransformationElement& other);
    TransformationElement& operator=(const TransformationElement& other);

    Type getType() const override;
    bool updated() override;
    void setSid(std::string sid) override;
    std::string getSid() const override;

protected:
    TransformationElement(Type type, bool updated);

    void markUpdated();

private:
    std::string sid_;
    Type type_;
    bool updatedFlag_;
};

}  // namespace vantorix::scene
