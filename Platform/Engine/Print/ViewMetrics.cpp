#include "Platform/Engine/Print/ViewMetrics.h"

#include "Platform/Engine/DevTools/PageWorld.h"

namespace qrv::engine {

Json viewMetrics(NSSize view, double scale) {
    return Json::object({{"width", static_cast<std::int64_t>(view.width)},
                         {"height", static_cast<std::int64_t>(view.height)},
                         {"screenWidth", static_cast<std::int64_t>(view.width)},
                         {"screenHeight", static_cast<std::int64_t>(view.height)},
                         {"deviceScaleFactor", 1},
                         {"scale", scale},
                         {"mobile", false}});
}

void setViewMetrics(PageWorld& world, NSSize view, double scale) {
    world.command(setMetricsCommand, viewMetrics(view, scale));
}

} // namespace qrv::engine
