// Answers what the document says of itself and the engine loses, or makes up, when it prints: its language, the texts of
// its headings, and where the targets of its inner links are, as far as they begin in the view; and whether it has
// frames. The page must be scrolled to its start.
() => {
    const root = property('documentElement');
    const rootAttribute = (space, name) => root && Element.prototype.getAttributeNS.call(root, space, name);
    const targetsInView = [];
    for (const [name, target] of linkTargets()) {
        const top = target ? Element.prototype.getClientRects.call(target)[0]?.top : 0;
        if (top < innerHeight) targetsInView.push({ name, top: Math.max(0, top) });
    }
    return {
        language:
            rootAttribute(null, 'lang') ?? rootAttribute('http://www.w3.org/XML/1998/namespace', 'lang'),
        headings: query('h1,h2,h3,h4,h5,h6,[role="heading"]')
            .map((heading) => heading.innerText)
            .filter(Boolean),
        targetsInView,
        hasFrames: length > 0,
    };
};
