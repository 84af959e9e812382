// Answers what the document says of itself and the engine loses, or makes up, when it prints: its language, the texts of
// its headings, and where the targets of its inner links are, as far as they begin in the view; whether it has frames;
// and at how many boxes a sheet ends in any case, where it has more than `few` elements, else 0. The page must be
// scrolled to its start.
(few) => {
    const root = property('documentElement');
    const rootAttribute = (space, name) => root && Element.prototype.getAttributeNS.call(root, space, name);
    return {
        language:
            rootAttribute(null, 'lang') ?? rootAttribute('http://www.w3.org/XML/1998/namespace', 'lang'),
        headings: query('h1,h2,h3,h4,h5,h6,[role="heading"]')
            .map((heading) => heading.innerText)
            .filter(Boolean),
        targetsInView: targetsInView(() => 0),
        hasFrames: length > 0,
        breaks: displayedTree().length > (few ?? Infinity) ? breakingBoxes().length : 0,
    };
};
