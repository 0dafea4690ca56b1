#include "apps/import/ClipTotals.h"

#include "apps/import/ImportError.h"
#include "apps/import/ImportLimits.h"
#include "apps/import/ModelDocument.h"

namespace vantorix::apps::import {

void ClipTotals::add(const ModelClip& clip) {
    channels += clip.channels.size();
    for (const auto& channel : clip.channels) {
        keys += channel.positions.times.size();
        keys += channel.rotations.times.size();
        keys += channel.scales.times.size();
    }
}

void ClipTotals::requireWithin(const ImportLimits& limits) const {
    import::requireWithin("animated nodes", channels, limits.items);
    import::requireWithin("animation keys", keys, limits.keys);
}

}  // namespace vantorix::apps::import
