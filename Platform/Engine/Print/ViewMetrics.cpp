#include "Platform/Engine/Print/ViewMetrics.h"

#include "Platform/Engine/DevTools/PageWorld.h"

namespace qrv::engine {

Json viewMetrics(NSSize view, double density, double scale) {
    return Json::object({{"width", static_cast<std::int64_t>(view.width)},
                         {"height", static_cast<std::int64_t>(view.height)},
                         {"screenWidth", static_cast<std::int64_t>(view.width)},
                         {"screenHeight", static_cast<std::int64_t>(view.height)},
                         {"deviceScaleFactor", density},
                         {"scale", scale},
                         {"mobile", false}});
}

void setViewMetrics(PageWorld& world, NSSize view, double density, double scale) {
    world.command(setMetricsCommand, viewMetrics(view, density, scale));
}

} // namespace qrv::engine
