#pragma once

// Brings a loaded page to the state in which it is drawn: everything that it shows has arrived, what it would
// show on being scrolled to included, and its scripts stand still.

#include "Platform/Engine/DevTools/PageWorld.h"
#include "Platform/Engine/Print/PrintLayout.h"

#include <functional>

namespace qrv::engine {

class PageReadiness {
public:
    /// True while the page waits for something that it asked for.
    using BusyCheck = std::function<bool()>;

    /// The addresses that can be had of those among which an image was chosen, if the chosen one cannot.
    using Substitution = std::function<std::vector<std::string>(const std::string& chosen,
                                                                const std::vector<std::string>& candidates)>;

    /// Both must outlive the readiness.
    PageReadiness(PageWorld& world, NSRunLoop& loop) : world_(world), loop_(loop) {}

    void setBusyCheck(BusyCheck isBusy) { isBusy_ = std::move(isBusy); }

    void setSubstitution(Substitution substitutesFor) { substitutesFor_ = std::move(substitutesFor); }

    /// Runs the loop until the page is ready, some seconds at most. `view` is the view that the page has, and
    /// has again afterwards.
    void settle(LayoutSize view);

private:
    Json awaitContents();
    void reveal(LayoutSize view, double documentHeight);
    void substitute(const Json& failedImages);
    void conclude();
    void awaitRequests(std::chrono::steady_clock::time_point end);
    void resize(LayoutSize view, double scale = 1);

    bool isBusy() const { return isBusy_ && isBusy_(); }

    PageWorld& world_;
    NSRunLoop& loop_;
    BusyCheck isBusy_;
    Substitution substitutesFor_;
};

/// The command that gives a page's view its size, and the parameters for it. The scale is that of the picture
/// which nobody looks at; the page does not know it.
inline constexpr char useMetrics[] = "Emulation.setDeviceMetricsOverride";
Json metrics(LayoutSize view, double scale = 1);

} // namespace qrv::engine
