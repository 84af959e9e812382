// Runs in the page's own world before the page's scripts. Assignments to document.domain change nothing, as in the
// engine; but in a document with a sandbox they would throw, and end the scripts of old pages.
(() => {
    const { get } = Object.getOwnPropertyDescriptor(Document.prototype, 'domain');
    Object.defineProperty(Document.prototype, 'domain', {
        get,
        set() {},
        enumerable: true,
        configurable: true,
    });
})();
