#include "scene/graph/MaterialIndex.h"

#include "scene/graph/SceneManager.h"
#include "scene/material/Material.h"
#include "scene/material/MaterialRenames.h"

namespace vantorix::scene {

boost::shared_ptr<Material> MaterialIndex::find(const std::string& id) {
    catchUp();
    const auto found = first_.find(id);
    return found == first_.end() ? nullptr : scene_.materialList_[found->second];
}

void MaterialIndex::catchUp() {
    const auto renames = materialRenames();
    if (renames != renames_ || scene_.materialListRewrites_ != rewrites_) {
        first_.clear();
        covered_ = 0;
    }
    renames_ = renames;
    rewrites_ = scene_.materialListRewrites_;
    for (; covered_ < scene_.materialList_.size(); ++covered_) {
        const auto& material = scene_.materialList_[covered_];
        if (material) first_.emplace(material->getMaterialID(), covered_);
    }
}

}  // namespace vantorix::scene
