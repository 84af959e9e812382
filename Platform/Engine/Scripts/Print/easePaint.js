// Spares the engine paint that costs it far more when it prints than on the screen. A shadow of underlined text costs as
// much as all that it can reach, which is the page unless the text is a group of its own: it becomes one, which changes
// nothing that is seen. `level` leaves out more: at 1 blurs, filters and masks, at 2 shadows as well. Answers whether
// there is anything left that a higher level would leave out.
(level) => {
    const nearlyOpaque = '0.999';
    const plain = ['none', 'normal', 'initial'];
    const costly = ['filter', 'backdrop-filter', 'mask-image', 'mix-blend-mode', 'text-shadow', 'box-shadow'];
    // Lines under, over and through text are drawn with the text of all that is inside.
    const isDecorated = (box) =>
        [box, ...ancestorsOf(box)].some((one) => getComputedStyle(one).textDecorationLine !== 'none');
    const withoutBlur = (shadows) => {
        // Each is a colour and lengths: two offsets, the blur, and the spread of a box's shadow.
        return shadows.replace(/(-?[\d.]+px) (-?[\d.]+px) [\d.]+px/g, '$1 $2 0px');
    };
    const eased = (name, value) => {
        if (level === 0) return value;
        if (name.endsWith('shadow')) return level === 1 ? withoutBlur(value) : 'none';
        return name === 'mix-blend-mode' ? 'normal' : 'none';
    };

    // Mostly the style sheets tell that there is none, or no shadow of text. At higher levels every box is asked.
    const declared = new Set();
    const isKnown =
        level === 0 &&
        visitDeclarations(['shadow', 'filter', 'mask', 'blend'], (name, value) => {
            if (!plain.includes(value)) declared.add(name);
        }) &&
        query('[filter],[mask],[attributeName]').length === 0;
    const inUse = costly.filter((name) => !isKnown || declared.has(name));
    const changesNothing = level === 0 && !inUse.includes('text-shadow');

    const changes = [];
    let hasCostly = false;
    for (const box of inUse.length > 0 ? displayedTree() : []) {
        if (hasCostly && changesNothing) break;
        const style = getComputedStyle(box);
        const found = inUse
            .map((name) => [name, style.getPropertyValue(name)])
            .filter(([, value]) => !plain.includes(value));
        if (found.length === 0) continue;
        const values = Object.fromEntries(found.map(([name, value]) => [name, eased(name, value)]));
        hasCostly ||= Object.values(values).some((value) => !plain.includes(value));
        const isShaded = style.textShadow !== 'none' && style.opacity === '1' && hasText(box);
        if (isShaded && isDecorated(box)) changes.push({ box, values: { ...values, opacity: nearlyOpaque } });
        else if (level > 0) changes.push({ box, values });
    }
    for (const { box, values } of changes) set(box, values);
    return hasCostly;
};
