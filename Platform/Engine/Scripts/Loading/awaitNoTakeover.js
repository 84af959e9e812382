// Runs in the page's own world before the page's scripts. A page may take a navigation over (`intercept`), and then it is
// loading until its handlers' promises are settled, which may be never: their promises are not handed on.
(() => {
    const { intercept } = NavigateEvent.prototype;
    const { apply } = Reflect;
    const callOnly = (handler) =>
        handler &&
        ((...given) => {
            apply(handler, undefined, given);
        });
    NavigateEvent.prototype.intercept = function (options = {}) {
        const { handler, precommitHandler, focusReset, scroll } = options;
        const kept = {
            handler: callOnly(handler),
            precommitHandler: callOnly(precommitHandler),
            focusReset,
            scroll,
        };
        return apply(intercept, this, [kept]);
    };
})();
