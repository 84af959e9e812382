// Answers when the fonts in use, and the images and first video pictures of the page and of its frames, are there or
// cannot be had; after `limit` milliseconds in any case. The page's scripts must not be switched off before: without
// them the timer never ends.
(limit) => {
    const answer = () => ({
        documentHeight: documentHeight(),
        viewHeight: innerHeight,
        isSingleMedia: /^(image|video|audio)[/]/.test(property('contentType')),
        failedImages: failedImages().map(({ chosen, candidates }) => ({ chosen, candidates })),
    });
    const pending = [];
    for (const content of contents()) {
        if (isDocument(content)) pending.push(property('fonts', content).ready);
        for (const image of query('img', content)) {
            if (!image.complete) pending.push(firstOf(image, 'load', 'error'));
        }
        for (const video of query('video', content)) {
            if (waitsForPicture(video)) pending.push(firstPicture(video));
        }
    }
    return Promise.race([
        Promise.all(pending).then(answer),
        new Promise((done) => setTimeout(() => done(answer()), limit)),
    ]);
};
