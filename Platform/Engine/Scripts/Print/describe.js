// Answers what the document says of itself and the engine loses, or makes up, when it prints: its language, the texts of
// its headings, and where the targets of its inner links are, as far as they begin in the view. The page
// must be scrolled to its start.
() => {
    const root = property('documentElement');
    const rootAttribute = (space, name) => root && Element.prototype.getAttributeNS.call(root, space, name);
    const withId = (id) =>
        Document.prototype.getElementById.call(document, id) ||
        Document.prototype.getElementsByName.call(document, id)[0];
    const decoded = (fragment) => {
        try {
            return decodeURIComponent(fragment);
        } catch {
            return fragment;
        }
    };
    const topOf = (fragment) => {
        const target = withId(fragment) || withId(decoded(fragment));
        if (target) return Element.prototype.getClientRects.call(target)[0]?.top;
        return ['', 'top'].includes(fragment.toLowerCase()) ? 0 : undefined;
    };
    const [address] = property('URL').split('#');
    const targets = new Map();
    for (const { href } of query('a[href],area[href]')) {
        const hash = String(href).indexOf('#');
        if (hash < 0 || href.slice(0, hash) !== address || targets.has(href.slice(hash + 1))) continue;
        const top = topOf(href.slice(hash + 1));
        if (top < innerHeight) targets.set(href.slice(hash + 1), Math.max(0, top));
    }
    return {
        language:
            rootAttribute(null, 'lang') ?? rootAttribute('http://www.w3.org/XML/1998/namespace', 'lang'),
        headings: query('h1,h2,h3,h4,h5,h6,[role="heading"]')
            .map((heading) => heading.innerText)
            .filter(Boolean),
        targetsInView: Array.from(targets, ([name, top]) => ({ name, top })),
    };
};
