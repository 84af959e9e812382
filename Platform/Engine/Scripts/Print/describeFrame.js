// Answers what a PDF has to say of a document in a frame and the engine leaves out: its headings, the frames among
// them, and where its inner links lead. Sub-frames get a link that covers their view, by which the frame's place in the
// PDF is known: it leads to `marker` and the frame's path, numbers in the frames of its
// parents. Nothing for frames in shadow trees, which have no number.
(marker) => {
    const path = [];
    for (let frame = window; frame !== frame.parent; frame = frame.parent) {
        path.unshift([...Array(frame.parent.length).keys()].findIndex((at) => frame.parent[at] === frame));
    }
    if (path.includes(-1)) return null;
    const cover = () => {
        const link = Document.prototype.createElementNS.call(document, 'http://www.w3.org/1999/xhtml', 'a');
        link.href = marker + path.join('.');
        link.style = 'all:initial!important;position:fixed!important;inset:0!important';
        Node.prototype.appendChild.call(property('documentElement'), link);
        return link.getBoundingClientRect();
    };
    const root = property('documentElement');
    const { left, top, width, height } =
        path.length > 0 && root ? cover() : { left: 0, top: 0, width: 0, height: 0 };
    // Nothing for what is not seen.
    const placeOf = (element) => {
        const box = Element.prototype.getBoundingClientRect.call(element);
        const across = Math.max(0, box.left - left);
        const down = Math.max(0, box.top - top);
        const isInside = box.right >= left && box.bottom >= top && across <= width && down <= height;
        return isInside ? { left: across, top: down } : {};
    };
    const headings = 'h1,h2,h3,h4,h5,h6,[role="heading"]';
    const isSeen = (element) => isDisplayed(element) && element.innerText;
    const levelOf = (heading) =>
        Number(/^h([1-6])$/.exec(heading.localName)?.[1] || attribute(heading, 'aria-level') || 2);
    const contents = query(`${headings},iframe,frame,object,embed`).flatMap((element) => {
        if (Element.prototype.matches.call(element, headings)) {
            return isSeen(element)
                ? [{ text: element.innerText, level: levelOf(element), ...placeOf(element) }]
                : [];
        }
        const frame = [...Array(length).keys()].findIndex((at) => window[at] === element.contentWindow);
        return frame < 0 ? [] : [{ frame }];
    });
    const anchors = Array.from(linkTargets(), ([name, target]) => ({
        name,
        ...(target ? placeOf(target) : { left: 0, top: 0 }),
    }));
    return { path: path.join('.'), width, contents, anchors };
};
