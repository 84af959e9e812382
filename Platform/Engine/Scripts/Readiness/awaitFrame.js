// Answers when the page has been laid out and painted in a view that was changed, and its images have chosen anew; after
// `limit` milliseconds in any case.
(limit) => {
    return Promise.race([nextFrame().then(nextFrame), new Promise((done) => setTimeout(done, limit))]);
};
