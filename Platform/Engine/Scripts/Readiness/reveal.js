// Has the page show what it shows only when it is scrolled to: moves the enlarged view over the document, a frame for
// each part of it. Where images still wait for their addresses then, the page is told that it was scrolled. Answers
// when that is done; no new part is looked at after `limit` milliseconds, so that endless pages have an end.
(limit) => {
    const steps = 10;
    const patience = 300;
    const end = performance.now() + limit;
    const after = (time) => new Promise((done) => setTimeout(done, time));
    // Images that wait carry their address in some attribute of data for scripts.
    const isWaiting = (image) =>
        (image.naturalWidth <= 1 || image.currentSrc.startsWith('data:')) &&
        Object.values(image.dataset).some((value) => /[./]/.test(value)) &&
        image.getClientRects().length > 0;
    const waiting = () => images().filter(isWaiting).length;
    let tells = true;
    const tell = async () => {
        const before = tells ? waiting() : 0;
        if (before === 0) return;
        EventTarget.prototype.dispatchEvent.call(document, new Event('scroll', { bubbles: true }));
        const last = Math.min(end, performance.now() + patience);
        while (waiting() === before && performance.now() < last) await after(10);
        tells = waiting() < before;
    };
    const reveal = async () => {
        scrollToTop(0);
        await nextFrame();
        await tell();
        for (let step = 1; step < steps && step * innerHeight < documentHeight(); ++step) {
            if (performance.now() > end) break;
            scrollToTop(step * innerHeight);
            await nextFrame();
            await tell();
        }
        scrollToTop(0);
    };
    return reveal();
};
