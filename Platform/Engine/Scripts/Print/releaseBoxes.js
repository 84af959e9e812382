// Sheets do not scroll. Sticky boxes stand where they are in the flow; modal dialogs and popovers, which the engine
// repeats on every sheet, become boxes fixed to the view, without a backdrop.
() => {
    const set = (box, values) => {
        for (const name in values)
            read(HTMLElement, 'style', box).setProperty(name, values[name], 'important');
    };
    for (const box of query('*')) {
        if (!(box instanceof HTMLElement) || getComputedStyle(box).position !== 'sticky') continue;
        set(box, { position: 'relative', inset: 'auto' });
    }
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
