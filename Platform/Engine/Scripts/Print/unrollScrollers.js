// Has boxes that scroll show all that they hold. On a page that does not scroll itself, those that fill most of the view
// grow in both modes, and so does whatever would clip them. On sheets, where nothing scrolls, others do, too: they grow,
// or wrap lines of preformatted text, or show tables smaller; but for those whose growth would cover what is below, and
// for pictures to leaf through. Each box that grows has the page laid out anew: after `limit` milliseconds the others
// stay as they are.
(isForSheets, limit) => {
    const end = performance.now() + limit;
    const inTime = () => performance.now() < end;
    const rectOf = (box) => Element.prototype.getBoundingClientRect.call(box);
    const px = (text) => parseFloat(text) || 0;
    // Rectangles are in the view's pixels, lengths of styles in those of the element's own zoom.
    const heightOf = (box) => rectOf(box).height / box.currentCSSZoom;
    const setLeastHeight = (box, height) => {
        const style = getComputedStyle(box);
        const around =
            style.boxSizing === 'border-box'
                ? 0
                : px(style.paddingTop) +
                  px(style.paddingBottom) +
                  px(style.borderTopWidth) +
                  px(style.borderBottomWidth);
        set(box, { 'min-height': `${Math.max(0, height - around)}px`, 'max-height': 'none' });
    };
    // A box that no longer scrolls keeps what comes with scrolling: margins stay inside, it may be narrower than its
    // contents, and these are cut at the sides.
    const unclip = (box) => {
        const style = getComputedStyle(box);
        if (style.overflowY === 'visible') return;
        const sideways = style.overflowX === 'visible' ? 'visible' : 'clip';
        if (style.display === 'block') set(box, { display: 'flow-root' });
        if (style.minWidth === 'auto') set(box, { 'min-width': '0' });
        set(box, { 'overflow-x': sideways, 'overflow-y': 'visible' });
    };
    // A box that stands at the bottom, too, would grow upwards, and nobody can scroll to what is fixed.
    const hang = (box) => {
        const { position } = getComputedStyle(box);
        if (position !== 'absolute' && position !== 'fixed') return;
        const { left, top, width } = rectOf(box);
        set(box, { position: 'absolute', inset: '0 auto auto 0', margin: '0', 'box-sizing': 'border-box' });
        set(box, { width: `${width / box.currentCSSZoom}px` });
        const moved = rectOf(box);
        const zoom = box.currentCSSZoom;
        set(box, { inset: `${(top - moved.top) / zoom}px auto auto ${(left - moved.left) / zoom}px` });
    };
    const hangsAlone = (box) =>
        [box, ...ancestorsOf(box)].some((one) =>
            ['absolute', 'fixed'].includes(getComputedStyle(one).position),
        );
    // In a column, the height is not the box's own to decide, and others would make room for it.
    const leaveColumn = (box) => {
        const parent = parentOf(box);
        const style = parent && getComputedStyle(parent);
        if (!style?.display.endsWith('flex') || !style.flexDirection.startsWith('column')) return;
        for (const other of elementsIn(parent)) {
            if (other !== box) setLeastHeight(other, heightOf(other));
        }
        set(box, { 'flex-basis': 'auto', 'flex-shrink': '0' });
    };

    const grow = (box, hidden) => {
        if (hidden === 0) return;
        const around = ancestorsOf(box).filter((one) => one !== property('documentElement'));
        const height = heightOf(box);
        for (const one of [...around].reverse()) hang(one);
        hang(box);
        const before = around.map(
            (one) => elementProperty('scrollHeight', one) - elementProperty('clientHeight', one),
        );
        leaveColumn(box);
        set(box, { height: 'auto' });
        if (!(box instanceof HTMLIFrameElement || box instanceof HTMLTextAreaElement)) unclip(box);
        setLeastHeight(box, height + hidden / box.currentCSSZoom);
        for (const [index, one] of around.entries()) {
            const more =
                elementProperty('scrollHeight', one) - elementProperty('clientHeight', one) - before[index];
            if (more <= 1) continue;
            if (!inTime()) break;
            setLeastHeight(one, heightOf(one) + more / one.currentCSSZoom);
            leaveColumn(one);
            unclip(one);
        }
    };

    const isWiderInside = (box) =>
        elementProperty('scrollWidth', box) > elementProperty('clientWidth', box) + 1 &&
        ['auto', 'scroll'].includes(getComputedStyle(box).overflowX);
    const wrapLines = (box) => {
        const inside = [box, ...elementsBelow(box)];
        const lines = inside.filter((one) => getComputedStyle(one).whiteSpace === 'pre');
        for (const one of lines) set(one, { 'white-space': 'pre-wrap', 'overflow-wrap': 'anywhere' });
        if (lines.length === 0 || !isWiderInside(box)) return;
        const { right } = rectOf(box);
        for (const one of inside.slice(1)) {
            if (rectOf(one).right > right) set(one, { 'min-width': '0', 'max-width': '100%' });
        }
    };
    const shrinkTable = (box) => {
        const [table, another] = elementsIn(box);
        if (!(table instanceof HTMLTableElement) || another) return;
        // Borders do not become as much smaller as the rest.
        for (let tries = 0; tries < 3 && isWiderInside(box); ++tries) {
            const part = elementProperty('clientWidth', box) / elementProperty('scrollWidth', box);
            set(table, { zoom: String(px(getComputedStyle(table).zoom) * part) });
        }
    };

    for (const box of fillingScrollers()) {
        if (!inTime()) break;
        grow(box, unseenDown(box));
    }
    if (!isForSheets) return;
    const others = clippingBoxes().filter(
        (box) =>
            (isWiderInside(box) || scrollableDown(box) > 0) &&
            getComputedStyle(box).scrollSnapType === 'none' &&
            isDisplayed(box),
    );
    for (const box of others.filter(isWiderInside)) {
        if (!inTime()) break;
        wrapLines(box);
        shrinkTable(box);
    }
    for (const box of others) {
        if (!inTime()) break;
        if (!hangsAlone(box)) grow(box, scrollableDown(box));
    }
};
