// Sheets do not scroll. Sticky boxes stand where they are in the flow; modal dialogs and popovers, which the engine
// repeats on every sheet, become boxes fixed to the view, without a backdrop. Outlines of boxes that may be broken,
// which the engine draws around each part and over its lines, become shadows, and pictures as borders, which it draws
// around each part as well, get room there.
() => {
    const partOfTheView = 0.25;
    const mayBeBroken = (box) =>
        Element.prototype.getBoundingClientRect.call(box).height > innerHeight * partOfTheView;
    const concerns = (box) => {
        const style = getComputedStyle(box);
        return (
            style.position === 'sticky' || style.outlineStyle !== 'none' || style.borderImageSource !== 'none'
        );
    };
    const changesOf = (box) => {
        const style = getComputedStyle(box);
        const changes = style.position === 'sticky' ? { position: 'relative', inset: 'auto' } : {};
        const hasOutline = style.outlineStyle !== 'none' && style.outlineWidth !== '0px';
        const hasPictures = style.borderImageSource !== 'none';
        if (!(hasOutline || hasPictures) || !mayBeBroken(box)) return changes;
        if (hasPictures) changes['box-decoration-break'] = 'clone';
        if (!hasOutline) return changes;
        const side = parseFloat(style.outlineOffset) < 0 ? 'inset ' : '';
        const ring = `${side}0 0 0 ${style.outlineWidth} ${style.outlineColor}`;
        const others = style.boxShadow === 'none' ? '' : `, ${style.boxShadow}`;
        return { ...changes, outline: 'none', 'box-shadow': ring + others };
    };
    // First all are asked, since each change may have the page laid out anew.
    const changed = displayedTree()
        .filter((box) => box instanceof HTMLElement && concerns(box))
        .map((box) => [box, changesOf(box)]);
    for (const [box, changes] of changed) set(box, changes);
    const takeDown = (box, leaveTopLayer) => {
        const { left, top, width, height } = Element.prototype.getBoundingClientRect.call(box);
        const { display } = getComputedStyle(box);
        leaveTopLayer();
        set(box, {
            display,
            position: 'fixed',
            inset: `${top}px auto auto ${left}px`,
            margin: 0,
            'z-index': 2 ** 31 - 1,
            'box-sizing': 'border-box',
            width: `${width}px`,
            height: `${height}px`,
            'max-width': 'none',
            'max-height': 'none',
        });
    };
    // Before the dialogs: one that is shown again hides popovers.
    for (const box of query(':popover-open')) {
        takeDown(box, () => HTMLElement.prototype.hidePopover.call(box));
    }
    for (const dialog of query('dialog:modal')) {
        takeDown(dialog, () => {
            HTMLDialogElement.prototype.close.call(dialog);
            HTMLDialogElement.prototype.show.call(dialog);
        });
    }
};
