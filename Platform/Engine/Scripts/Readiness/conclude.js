// Takes back animations that follow an element's place in the view, which it has no longer. Answers the number of
// images that are still on their way.
() => {
    for (const animation of animations()) {
        if (animation.timeline instanceof ViewTimeline) animation.cancel();
    }
    return images().filter((image) => !image.complete).length;
};
