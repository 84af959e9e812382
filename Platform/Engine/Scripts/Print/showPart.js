// Shows one part of a document that was divided (divide.js), from 0 to `last`, and nothing of the others. Answers where
// the targets of inner links are that begin in the first view of the part.
(part, last) => {
    const { outer, parts, edges, hidden } = globalThis[Symbol.for('web2pdf-parts')];
    const restore = (changes) => {
        for (const [style, name, value, priority] of changes) style.setProperty(name, value, priority);
    };
    const change = (element, names, value) => {
        const style = styleOf(element);
        return (style ? names : []).map((name) => {
            const change = [style, name, style.getPropertyValue(name), style.getPropertyPriority(name)];
            style.setProperty(name, value, 'important');
            return change;
        });
    };
    // Only what changes from part to part, since there may be many.
    parts.forEach((elements, at) => {
        if (at !== part && !hidden.has(at)) {
            const changes = elements.flatMap((element) => change(element, ['display'], 'none'));
            hidden.set(at, changes);
        }
    });
    restore(hidden.get(part) ?? []);
    hidden.delete(part);
    // As at every break within a box.
    restore(edges.splice(0));
    const edgesAt = (side) => [`margin-${side}`, `border-${side}-width`, `padding-${side}`];
    for (const box of outer) {
        if (part > 0) edges.push(...change(box, edgesAt('top'), '0'));
        if (part < last) edges.push(...change(box, edgesAt('bottom'), '0'));
    }
    const root = property('documentElement');
    return targetsInView(() => Element.prototype.getBoundingClientRect.call(root).top);
};
