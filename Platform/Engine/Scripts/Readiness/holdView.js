// Begins to hold the view, before it is enlarged. The event for the size that it has may not have come yet and would
// be withheld: the page is told of it first.
() => {
    const view = globalThis[Symbol.for('web2pdf-view')];
    if (!view) return;
    if (view.width !== innerWidth || view.height !== innerHeight) dispatchEvent(new Event('resize'));
    view.held = true;
};
