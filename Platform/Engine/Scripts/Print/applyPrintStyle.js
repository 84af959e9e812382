// Puts a print's style sheet into the page, in the place of an earlier one. The element that `imageTarget` selects gets
// background images: `imagesOnTop` (CSS, with a comma behind each), then those that the root or the body has, as
// `imageSource` says ("root", "body"; empty: its own stay). Answers whether the sheet is in force. There is no way
// back, so that printing is the next and last thing to do.
(styleSheet, imageTarget, imageSource, imagesOnTop) => {
    const accessor = (name) => Object.getOwnPropertyDescriptor(Document.prototype, name);
    const root = property('documentElement');
    const body = property('body');
    const takeBack = Symbol.for('web2pdf-takeBack');
    globalThis[takeBack]?.();
    const images = imageSource && getComputedStyle({ root, body }[imageSource]).backgroundImage;
    const element = Document.prototype.createElementNS.call(
        document,
        'http://www.w3.org/1999/xhtml',
        'style',
    );
    element.textContent = styleSheet;
    if (root) Element.prototype.prepend.call(property('head') || root, element);
    // Where a policy forbids style elements, an adopted sheet is still allowed; it comes last, so that only the
    // document's own layers are stronger.
    let sheet = element.sheet;
    if (!sheet) {
        sheet = new CSSStyleSheet();
        sheet.replaceSync(styleSheet);
        accessor('adoptedStyleSheets').set.call(document, [sheet, ...property('adoptedStyleSheets')]);
    }
    globalThis[takeBack] = () => {
        element.remove();
        const others = property('adoptedStyleSheets').filter((adopted) => adopted !== sheet);
        accessor('adoptedStyleSheets').set.call(document, others);
    };
    const [layer] = sheet.cssRules;
    if (imageSource) {
        const rule = `${imageTarget}{background-image:${imagesOnTop}${images}!important}`;
        layer.insertRule(rule, layer.cssRules.length);
    }
    // Important declarations of style attributes are stronger than any sheet: they lose their importance.
    for (const rule of layer?.cssRules ?? []) {
        const target = { html: root, body }[rule.selectorText];
        if (!target) continue;
        for (const name of rule.style) {
            if (target.style.getPropertyPriority(name) === '') continue;
            target.style.setProperty(name, target.style.getPropertyValue(name), '');
        }
    }
    return sheet.cssRules.length > 0;
};
