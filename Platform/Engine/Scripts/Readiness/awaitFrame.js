// Answers when the page has been laid out and painted in a view that was changed, and its images have chosen anew; after
// `limit` milliseconds in any case.
(limit) => {
    const frame = () => new Promise((done) => requestAnimationFrame(() => setTimeout(done, 0)));
    return Promise.race([frame().then(frame), new Promise((done) => setTimeout(done, limit))]);
};
