#pragma once

// Brings a loaded page to the state in which it is drawn: everything that it shows has arrived, what it would
// show on being scrolled to included, and its scripts stand still.

#include "Platform/Engine/DevTools/PageWorld.h"
#include "Platform/Foundation/NSRange.h"

#include <functional>

namespace qrv::engine {

/// An image that could not be had and was chosen among several: addresses, as the engine knows them.
struct FailedImage {
    std::string chosen;
    std::vector<std::string> candidates;
};

/// What the awaiting script answers.
struct PageContents {
    double documentHeight = 0; ///< CSS px
    double viewHeight = 0;
    bool isSingleMedia = false; ///< the page is a picture or a film
    std::vector<FailedImage> failedImages;
};

/// What is missing or of another kind is left as it is at first.
PageContents pageContentsFromJson(const Json& answer);

class PageReadiness {
public:
    /// True while the page waits for something that it asked for.
    using BusyCheck = std::function<bool()>;

    /// The addresses that can be had of those among which an image was chosen, if the chosen one cannot.
    using Substitution = std::function<std::vector<std::string>(const std::string& chosen,
                                                                const std::vector<std::string>& candidates)>;

    /// What can be had of pictures, by their addresses as the engine knows them.
    struct Pictures {
        std::function<bool()> mayBeOthers; ///< some are missing, and some that can be had were not asked for
        std::function<bool(const std::string& address)> canBeHad;
        std::function<void(const std::string& address)>
            dismiss; ///< one that is missing is not in use any more
    };

    /// Both must outlive the readiness.
    PageReadiness(PageWorld& world, NSRunLoop& loop) : world_(world), loop_(loop) {}

    void setBusyCheck(BusyCheck isBusy) { isBusy_ = std::move(isBusy); }

    void setSubstitution(Substitution substitutesFor) { substitutesFor_ = std::move(substitutesFor); }

    void setPictures(Pictures pictures) { pictures_ = std::move(pictures); }

    /// The density of the view: the one at which the fewest pictures are missing. 1 until the page is
    /// settled.
    double density() const { return density_; }

    /// Has the page ask for all that it shows in a view of this size and density, scrolled to its end
    /// included, and runs the loop until that is there, some seconds at most. Its scripts go on.
    void visit(NSSize view, double density);

    /// Runs the loop until the page is ready, some seconds at most. `view` is the view that the page has, and
    /// has again afterwards.
    void settle(NSSize view);

private:
    PageContents awaitContents();
    PageContents chooseDensity(NSSize view, const PageContents& contents);
    PageContents setDensity(NSSize view, double density);
    std::vector<std::string> missingPictures();
    void enlarge(NSSize view, double documentHeight);
    void reveal(NSSize view, double documentHeight);
    void substitute(const std::vector<FailedImage>& images);
    void stopScripts();
    void conclude();
    void awaitRequests(std::chrono::steady_clock::time_point end);

    bool isBusy() const { return isBusy_ && isBusy_(); }

    PageWorld& world_;
    NSRunLoop& loop_;
    BusyCheck isBusy_;
    Substitution substitutesFor_;
    Pictures pictures_;
    double density_ = 1;
};

} // namespace qrv::engine
