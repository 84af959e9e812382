// Has images choose anew among their addresses. The engine keeps their choice when the view's density changes, until an
// attribute is set.
() => {
    for (const content of trees()) {
        for (const element of query('img[srcset], source[srcset]', content)) {
            Element.prototype.setAttribute.call(element, 'srcset', attribute(element, 'srcset'));
        }
    }
};
