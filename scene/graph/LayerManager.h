#pragma once

#include <map>
#include <string>

#include <boost/smart_ptr/shared_ptr.hpp>

#include "core_api/logger/Logger.h"

#include "scene/SceneExport.h"

namespace vantorix::scene {

/// The layers of one scene: names, and the numbers that nodes carry.
///
/// IDs count from 0 in order of creation and are never reused; layers are never removed. Every
/// table starts with "hidden", "visible", "selected", "cast_shadow", "transparent" and
/// "post_render", IDs 0 to 5. Threads: not locked.
class VANTORIX_SCENE_EXPORT LayerManager {
public:
    LayerManager();
    virtual ~LayerManager();
    LayerManager(const LayerManager&) = delete;
    LayerManager& operator=(const LayerManager&) = delete;

    /// ID of the layer @p name, which is made if there is none.
    int addLayer(std::string name);

    /// Same as addLayer: asking for an unknown name registers it.
    int getLayerID(std::string name);

    /// Name of the layer with this ID; empty if there is none.
    std::string getLayerName(int id);

    /// Takes in the layers of @p other, in name order. An unknown name gets the next ID; a known
    /// one is discarded or, unless @p discardRepeated, added as name + "__renamed__".
    /// @returns other IDs that mean another ID here. Deliberate: layers whose name was unknown here
    /// have no entry, even when their ID changed.
    std::map<int, int> mergeLayers(boost::shared_ptr<LayerManager> other, bool discardRepeated);

private:
    core::logger::Logger logger_;
    std::map<std::string, int> layers_;
    std::map<int, std::string> names_;  ///< The other way round; IDs that were used up are missing.
    int nextLayerID_ = 0;
};

}  // namespace vantorix::scene
