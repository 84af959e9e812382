// Scrolls to the start of the page. Nothing moves from here to the print: what has an end in time is at it, the rest
// stands still. Nothing is added either, so that the document is walked through once for all that follows.
() => {
    scrollToTop(0);
    keepWalk();
    for (const animation of animations()) {
        const endsInTime =
            animation.timeline instanceof DocumentTimeline &&
            Number.isFinite(animation.effect?.getComputedTiming().endTime);
        try {
            if (endsInTime) {
                animation.finish();
            } else {
                animation.pause();
                // Lets go of a timeline that follows the scrolling.
                const { currentTime } = animation;
                animation.currentTime = currentTime;
            }
        } catch {
            // An animation that the page's scripts have given values which allow neither: it goes on.
        }
    }
};
