#include "Platform/Engine/Print/PageReadiness.h"

#include "Platform/Engine/Print/ViewMetrics.h"

#include <algorithm>
#include <set>

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

// Those of other screens.
constexpr double otherDensities[] = {2, 3};

// For the frame in which a changed view is painted.
constexpr milliseconds frameLimit{500};

// A view this tall shows almost every page whole; each further look takes a frame.
constexpr double tallestView = 100'000;

// Keeps the engine from painting the tall view at its full size, which takes several times as long as all the
// rest.
constexpr double tallScale = 0.1;

} // namespace

PageContents pageContentsFromJson(const Json& answer) {
    PageContents contents;
    contents.documentHeight = answer["documentHeight"].number();
    contents.viewHeight = answer["viewHeight"].number();
    contents.isSingleMedia = answer["isSingleMedia"].boolean();
    for (const Json& image : answer["failedImages"].elements()) {
        FailedImage failed{.chosen = image["chosen"].string(), .candidates = {}};
        for (const Json& candidate : image["candidates"].elements()) {
            failed.candidates.push_back(candidate.string());
        }
        contents.failedImages.push_back(std::move(failed));
    }
    return contents;
}

void PageReadiness::settle(NSSize view) {
    // Timers and promises stand still when scripts do.
    PageContents contents = world_.isInterrupted() ? PageContents() : awaitContents();
    if (!world_.isInterrupted() && pictures_.mayBeOthers && pictures_.mayBeOthers()) {
        contents = chooseDensity(view, contents);
    }
    if (contents.isSingleMedia && !world_.isInterrupted()) {
        world_.await(scripts::presentMedia, {contentsLimit.count()});
    }
    if (contents.documentHeight > contents.viewHeight && !world_.isInterrupted()) {
        reveal(view, contents.documentHeight);
    } else {
        substitute(contents.failedImages);
        stopScripts();
    }
}

/// A page that was saved from a dense screen has the pictures for that only.
PageContents PageReadiness::chooseDensity(NSSize view, const PageContents& contents) {
    PageContents last = contents;
    double best = density_;
    std::vector<std::string> fewest = missingPictures();
    std::set<std::string> missed(fewest.begin(), fewest.end());
    for (const double density : otherDensities) {
        if (fewest.empty() || world_.isInterrupted()) break;
        last = setDensity(view, density);
        std::vector<std::string> missing = missingPictures();
        missed.insert(missing.begin(), missing.end());
        if (missing.size() >= fewest.size()) continue;
        best = density;
        fewest = std::move(missing);
    }
    if (density_ != best) last = setDensity(view, best);
    for (const std::string& address : fewest) missed.erase(address);
    for (const std::string& address : missed) pictures_.dismiss(address);
    return last;
}

/// The engine answers media queries about the density anew when the size changes.
PageContents PageReadiness::setDensity(NSSize view, double density) {
    density_ = density;
    setViewMetrics(world_, {view.width + 1, view.height}, density_);
    setViewMetrics(world_, view, density_);
    world_.await(scripts::awaitFrame, {frameLimit.count()});
    world_.callInFrames(scripts::renewImageSets);
    return awaitContents();
}

std::vector<std::string> PageReadiness::missingPictures() {
    std::vector<std::string> missing;
    for (const auto& [frame, answer] : world_.callInFrames(scripts::picturesInUse, {density_})) {
        for (const Json& address : answer.elements()) {
            if (!pictures_.canBeHad(address.string())) missing.push_back(address.string());
        }
    }
    return missing;
}

void PageReadiness::visit(NSSize view, double density) {
    if (world_.isInterrupted()) return;
    setDensity(view, density);
    world_.callInFrames(scripts::chooseImagesAnew);
    const PageContents contents = awaitContents();
    if (world_.isInterrupted() || contents.documentHeight <= contents.viewHeight) return;
    enlarge(view, contents.documentHeight);
    if (!world_.isInterrupted()) awaitContents();
    setViewMetrics(world_, view, density_);
}

/// Makes the view as tall as the document, and goes through it.
void PageReadiness::enlarge(NSSize view, double documentHeight) {
    setViewMetrics(world_, {view.width, std::clamp(documentHeight, view.height, tallestView)}, density_,
                   tallScale);
    world_.await(scripts::reveal, {revealingLimit.count()});
}

/// Scripts are stopped while the view is still tall: some pages hide again what is no longer looked at.
void PageReadiness::reveal(NSSize view, double documentHeight) {
    world_.call(scripts::holdView);
    enlarge(view, documentHeight);
    if (!world_.isInterrupted()) substitute(awaitContents().failedImages);
    stopScripts();
    setViewMetrics(world_, view, density_);
    conclude();
}

/// A page is mostly saved at another density or width than it is printed at, with the images for those.
void PageReadiness::substitute(const std::vector<FailedImage>& images) {
    std::vector<Json> held;
    for (const FailedImage& image : substitutesFor_ ? images : std::vector<FailedImage>()) {
        const auto found = substitutesFor_(image.chosen, image.candidates);
        held.insert(held.end(), found.begin(), found.end());
    }
    if (held.empty()) return;
    world_.call(scripts::substituteImages, {Json::array(held)});
    if (!world_.isInterrupted()) awaitContents();
}

void PageReadiness::stopScripts() {
    world_.callInFrames(scripts::pretendScripts);
    world_.stopScripts();
}

/// What arrives may ask for more.
PageContents PageReadiness::awaitContents() {
    const auto end = steady_clock::now() + contentsLimit;
    std::optional<Json> answer;
    do {
        awaitRequests(end);
        const auto rest = duration_cast<milliseconds>(end - steady_clock::now());
        answer = world_.await(scripts::awaitContents, {std::max(rest, milliseconds(0)).count()});
    } while (isBusy() && answer && steady_clock::now() < end);
    return pageContentsFromJson(answer.value_or(Json()));
}

void PageReadiness::awaitRequests(steady_clock::time_point end) {
    loop_.runUntil([this] { return !isBusy(); }, end);
}

void PageReadiness::conclude() {
    const auto end = steady_clock::now() + concludingLimit;
    while (world_.call(scripts::conclude).value_or(Json()).integer() > 0 && steady_clock::now() < end) {
        loop_.runUntil([] { return false; }, steady_clock::now() + pollInterval);
    }
}

} // namespace qrv::engine
