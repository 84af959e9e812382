// Runs in the isolated world before the page's scripts. Keeps the page from noticing that its view is enlarged for a
// moment: while the view is held (holdView.js), the page gets no resize or scroll events.
(() => {
    if (window !== top) return;
    // Kept under a symbol, since an element can have any name.
    const view = { held: false, width: innerWidth, height: innerHeight };
    globalThis[Symbol.for('web2pdf-view')] = view;
    const notice = (event) => {
        if (!view.held) {
            view.width = innerWidth;
            view.height = innerHeight;
        } else if (event.isTrusted) {
            event.stopImmediatePropagation();
        }
    };
    for (const target of [window, visualViewport]) {
        for (const type of ['resize', 'scroll', 'scrollend']) target.addEventListener(type, notice, true);
    }
})();
