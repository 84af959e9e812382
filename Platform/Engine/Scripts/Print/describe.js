// Answers what the document says of itself and the engine loses, or makes up, when it prints: its language, the texts of
// its headings, and where the targets of its inner links are, as far as they begin in the view; and whether it has
// frames. It has at most as many boxes at which a sheet ends in any case as it has elements: where these are more than
// `few`, it is said how many. The page must be scrolled to its start.
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
