// Spares the engine paint that costs it far more when it prints than on the screen. A shadow of underlined text costs as
// much as all that it can reach, which is the page unless the text is a group of its own: it becomes one, which changes
// nothing that is seen. `level` leaves out more: at 1 blurs, filters and masks, at 2 shadows as well. Answers whether
// there is anything left that a higher level would leave out.
(level) => {
    const nearlyOpaque = '0.999';
    const isText = (node) => read(Node, 'nodeType', node) === Node.TEXT_NODE;
    const hasText = (box) =>
        [...read(Node, 'childNodes', box)].some(
            (node) => isText(node) && read(CharacterData, 'data', node).trim() !== '',
        );
    // Lines under, over and through text are drawn with the text of all that is inside.
    const isDecorated = (box) =>
        [box, ...ancestorsOf(box)].some((one) => getComputedStyle(one).textDecorationLine !== 'none');
    const withoutBlur = (shadows) => {
        // Each is a colour and lengths: two offsets, the blur, and the spread of a box's shadow.
        return shadows.replace(/(-?[\d.]+px) (-?[\d.]+px) [\d.]+px/g, '$1 $2 0px');
    };
    const costly = ['filter', 'backdropFilter', 'maskImage', 'mixBlendMode', 'textShadow', 'boxShadow'];
    let hasCostly = false;
    for (const box of displayedTree()) {
        const style = getComputedStyle(box);
        const isShaded = style.textShadow !== 'none' && style.opacity === '1' && hasText(box);
        if (isShaded && isDecorated(box)) {
            set(box, { opacity: nearlyOpaque });
        }
        if (level >= 1) {
            if (style.filter !== 'none') set(box, { filter: 'none' });
            if (style.backdropFilter !== 'none') set(box, { 'backdrop-filter': 'none' });
            if (style.maskImage !== 'none') set(box, { 'mask-image': 'none' });
            if (style.mixBlendMode !== 'normal') set(box, { 'mix-blend-mode': 'normal' });
        }
        for (const name of ['textShadow', 'boxShadow']) {
            if (level === 0 || style[name] === 'none') continue;
            const property = name === 'textShadow' ? 'text-shadow' : 'box-shadow';
            set(box, { [property]: level === 1 ? withoutBlur(style[name]) : 'none' });
        }
        hasCostly ||= costly.some((name) => !['none', 'normal'].includes(style[name]));
    }
    return hasCostly;
};
