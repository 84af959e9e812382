#include "Platform/Engine/Print/PageReadiness.h"

#include "Platform/Engine/Scripts/ReadinessScripts.h"

#include <algorithm>

namespace qrv::engine {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;
using std::chrono::steady_clock;

// For what is on its way when the page is to be drawn, and again for what was revealed by looking at all of
// the page. Below the world's patience, since the answer must come before that ends.
constexpr milliseconds contentsLimit{2500};
constexpr milliseconds revealingLimit{1500};
// For images that are chosen anew when the view gets its own size again.
constexpr milliseconds concludingLimit{500};
constexpr milliseconds pollInterval{5};

// A view this tall shows almost every page whole; each further look takes a frame.
constexpr double tallestView = 100'000;

// Keeps the engine from painting the tall view at its full size, which takes several times as long as all the
// rest.
constexpr double tallScale = 0.1;

} // namespace

Json metrics(LayoutSize view, double scale) {
    return Json::object({{"width", static_cast<std::int64_t>(view.width)},
                         {"height", static_cast<std::int64_t>(view.height)},
                         {"deviceScaleFactor", 1},
                         {"scale", scale},
                         {"mobile", false}});
}

void PageReadiness::settle(LayoutSize view) {
    // Timers and promises stand still when scripts do.
    const Json answer = world_.isInterrupted() ? Json() : awaitContents();
    const double documentHeight = answer["documentHeight"].number();
    if (documentHeight > answer["viewHeight"].number() && !world_.isInterrupted()) {
        reveal(view, documentHeight);
    } else {
        substitute(answer["failed"]);
        world_.stopScripts();
    }
}

/// Scripts are stopped while the view is still tall: some pages hide again what is no longer looked at.
void PageReadiness::reveal(LayoutSize view, double documentHeight) {
    world_.evaluate(holdingScript());
    resize({view.width, std::clamp(documentHeight, view.height, tallestView)}, tallScale);
    world_.evaluatePromise(revealingScript(revealingLimit));
    if (!world_.isInterrupted()) substitute(awaitContents()["failed"]);
    world_.stopScripts();
    resize(view);
    conclude();
}

/// A page is mostly saved at another density or width than it is printed at, with the images for those.
void PageReadiness::substitute(const Json& failedImages) {
    std::vector<std::string> held;
    for (const Json& image : substitutesFor_ ? failedImages.elements() : std::vector<Json>()) {
        std::vector<std::string> candidates;
        for (const Json& candidate : image["candidates"].elements()) candidates.push_back(candidate.string());
        const auto found = substitutesFor_(image["chosen"].string(), candidates);
        held.insert(held.end(), found.begin(), found.end());
    }
    if (held.empty()) return;
    world_.evaluate(substitutingScript(held));
    if (!world_.isInterrupted()) awaitContents();
}

/// What arrives may ask for more.
Json PageReadiness::awaitContents() {
    const auto end = steady_clock::now() + contentsLimit;
    Json answer;
    do {
        awaitRequests(end);
        const auto rest = duration_cast<milliseconds>(end - steady_clock::now());
        answer = world_.evaluatePromise(readinessScript(std::max(rest, milliseconds(0)))).value_or(Json());
    } while (isBusy() && answer.isObject() && steady_clock::now() < end);
    return answer;
}

void PageReadiness::awaitRequests(steady_clock::time_point end) {
    loop_.runUntil([this] { return !isBusy(); }, end);
}

void PageReadiness::conclude() {
    const auto end = steady_clock::now() + concludingLimit;
    while (world_.evaluate(concludingScript()).value_or(Json()).integer() > 0 && steady_clock::now() < end) {
        loop_.runUntil([] { return false; }, steady_clock::now() + pollInterval);
    }
}

void PageReadiness::resize(LayoutSize view, double scale) {
    world_.call(useMetrics, metrics(view, scale));
}

} // namespace qrv::engine
