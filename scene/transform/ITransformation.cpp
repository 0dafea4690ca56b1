#include "scene/transform/ITransformation.h"

namespace vantorix::scene {

ITransformation::~ITransformation() = default;

}  // namespace vantorix::scene
