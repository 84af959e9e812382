// Runs in the page's own world before the page's scripts: a page that closes its window would end the engine.
(() => {
    Object.defineProperty(window, 'close', { value() {}, writable: false, configurable: false });
})();
