// Divides a long document into parts that can be printed one after the other; showPart.js shows them. Each but the last
// is at least `length` px long, where a box at which a sheet ends in any case counts as a whole `sheet`. Answers their
// number: 1 for a document whose parts would look other than they do in the whole, since boxes stand where they do,
// counters count, or sheets are of one side, because of what is in another part.
(length, sheet) => {
    const blocks = ['block', 'flow-root', 'list-item', 'table', 'flex', 'grid'];
    const boxOf = (element) => Element.prototype.getBoundingClientRect.call(element);
    const pushesOthers = ({ display, position }) =>
        display !== 'none' && ['static', 'relative'].includes(position);
    // Such a box shows nothing but what is in it, one below the other.
    const isPlain = (element) => {
        const style = getComputedStyle(element);
        const isGenerated = ['::before', '::after'].some(
            (pseudo) => !['none', 'normal'].includes(getComputedStyle(element, pseudo).content),
        );
        return (
            ['block', 'flow-root'].includes(style.display) &&
            pushesOthers(style) &&
            style.float === 'none' &&
            style.writingMode === 'horizontal-tb' &&
            style.columnCount === 'auto' &&
            style.columnWidth === 'auto' &&
            style.backgroundImage === 'none' &&
            style.borderImageSource === 'none' &&
            element.localName !== 'ol' &&
            !elementProperty('shadowRoot', element) &&
            !isGenerated &&
            !hasText(element)
        );
    };
    const pushing = (element) =>
        elementsIn(element)
            .map((child) => ({ child, style: getComputedStyle(child), box: boxOf(child) }))
            .filter(({ style }) => pushesOthers(style));

    // From the body inwards, until no box holds most of the document any more.
    const outer = [];
    const most = scrolledHeight() / 2;
    let within = property('body');
    while (within && isPlain(within)) {
        outer.push(within);
        within = pushing(within).find(({ box }) => box.height > most)?.child;
    }
    if (outer.length === 0) return 1;

    const breaking = breakingBoxes();
    const sides = ['left', 'right', 'recto', 'verso'];
    const choosesSide = (style) => sides.includes(style.breakBefore) || sides.includes(style.breakAfter);
    if (breaking.some((box) => choosesSide(getComputedStyle(box)))) return 1;
    const children = new Set(elementsIn(outer.at(-1)));
    const breaks = new Map();
    for (const box of breaking) {
        const child = [box, ...ancestorsOf(box)].find((one) => children.has(one));
        breaks.set(child, (breaks.get(child) ?? 0) + 1);
    }

    // A part begins with a box that stands below all before it.
    const starts = new Map();
    let last = 0;
    let start = -Infinity;
    let used = 0;
    let firstEnd = Infinity;
    let bottom = -Infinity;
    for (const { child, style, box } of pushing(outer.at(-1))) {
        if (start === -Infinity) start = box.top;
        const isBelow = blocks.includes(style.display) && style.float === 'none' && box.top >= bottom;
        if (isBelow && box.top - start + used >= length) {
            start = box.top;
            used = 0;
            firstEnd = Math.min(firstEnd, start);
            starts.set(child, ++last);
        }
        used += (breaks.get(child) ?? 0) * sheet;
        // Floats may reach out of the box that they are in.
        bottom = Math.max(bottom, box.bottom, box.top + elementProperty('scrollHeight', child));
    }
    if (last === 0) return 1;

    // What is taken out of the flow stands where it does from the start of the document.
    const partOf = new Map();
    let part = 0;
    outer.forEach((box, depth) => {
        const children = elementsIn(box);
        const next = children.indexOf(outer[depth + 1]);
        children.forEach((child, at) => {
            if (at === next) return;
            part = starts.get(child) ?? part;
            const isOut = ['absolute', 'fixed'].includes(getComputedStyle(child).position);
            partOf.set(child, isOut ? 0 : next >= 0 && at > next ? last : part);
        });
    });

    const places = ({ position, transform }) => position !== 'static' || transform !== 'none';
    const standsElsewhere = (element) => {
        const { position } = getComputedStyle(element);
        if (!['absolute', 'fixed'].includes(position) || !isDisplayed(element)) return false;
        const around = [element, ...ancestorsOf(element)];
        const unit = around.findIndex((one) => partOf.has(one));
        if (unit < 0) return false;
        const isPlaced =
            position === 'absolute' && around.slice(1, unit + 1).some((one) => places(getComputedStyle(one)));
        return !isPlaced && (partOf.get(around[unit]) > 0 || boxOf(element).bottom > firstEnd);
    };
    const counts = (element) =>
        [null, '::before', '::after'].some((pseudo) => {
            const { counterReset, counterIncrement, counterSet } = getComputedStyle(element, pseudo);
            return [counterReset, counterIncrement, counterSet].some((value) => value !== 'none');
        });
    let mayCount = false;
    const areAll = visitDeclarations(['counter'], (name) => (mayCount ||= name.startsWith('counter')));
    const mayDiffer = (element) => standsElsewhere(element) || ((mayCount || !areAll) && counts(element));
    if (displayedTree().some(mayDiffer)) return 1;
    const parts = Array.from({ length: last + 1 }, () => []);
    for (const [element, itsPart] of partOf) parts[itsPart].push(element);
    globalThis[Symbol.for('web2pdf-parts')] = { outer, parts, edges: [], hidden: new Map() };
    return last + 1;
};
