// Puts a print's style sheet into the page, in the place of an earlier one. The element that `imageTarget` selects gets
// background images: `imagesOnTop` (CSS, with a comma behind each), then those that the root or the body has, as
// `imageSource` says ("root", "body"; empty: its own stay). Answers whether the sheet is in force. There is no way
// back, so that printing is the next and last thing to do.
//
// What is set on the root and on the body goes no further: those of their children, and of their generated boxes, that
// say "inherit" keep the values that they have.
(styleSheet, imageTarget, imageSource, imagesOnTop) => {
    const mostHeirs = 20_000;
    const accessor = (name) => Object.getOwnPropertyDescriptor(Document.prototype, name);
    const root = property('documentElement');
    const body = property('body');
    const takeBack = Symbol.for('web2pdf-takeBack');
    globalThis[takeBack]?.();
    const images = imageSource && getComputedStyle({ root, body }[imageSource]).backgroundImage;

    const propertiesSetOn = (selector) => {
        const probe = new CSSStyleSheet();
        probe.replaceSync(styleSheet);
        const rules = [...(probe.cssRules[0]?.cssRules ?? [])];
        const names = rules
            .filter((rule) => rule.selectorText === selector)
            .flatMap((rule) => [...rule.style]);
        return imageSource && imageTarget === selector ? [...names, 'background-image'] : names;
    };
    const setOnRoot = propertiesSetOn('html');
    const setOnBody = propertiesSetOn('body');
    const toBody = setOnRoot.filter((name) => !setOnBody.includes(name));
    const valuesOf = (child, names) => {
        const values = Element.prototype.computedStyleMap.call(child);
        return names.map((name) => [name, String(values.get(name))]);
    };
    const heirsOf = (parent, names) =>
        (names.length > 0 && parent ? elementsIn(parent) : [])
            .slice(0, mostHeirs)
            .filter((child) => child !== body && child.localName !== imageTarget)
            .map((child) => ({ child, values: valuesOf(child, names) }));
    const heirs = [...heirsOf(root, setOnRoot), ...heirsOf(body, setOnBody)];
    if (body) heirs.push({ child: body, values: valuesOf(body, toBody) });
    // Places and sizes of generated boxes are known as they are used only, which is as they will be.
    const isPlaced = (name) => /^(inset|top|right|bottom|left|margin|padding|.*width|.*height)/.test(name);
    const generatedOf = (selector, owner, names) =>
        ['::before', '::after'].flatMap((pseudo) => {
            const style = owner && getComputedStyle(owner, pseudo);
            if (!style || style.content === 'none') return [];
            const values = names.filter((name) => !isPlaced(name)).map((name) => [name, style[name]]);
            return [{ selector: selector + pseudo, style, values }];
        });
    const generated = [...generatedOf('html', root, setOnRoot), ...generatedOf('body', body, setOnBody)];

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
    for (const { child, values } of heirs) {
        const now = Element.prototype.computedStyleMap.call(child);
        for (const [name, value] of values) {
            if (String(now.get(name)) !== value) styleOf(child)?.setProperty(name, value, 'important');
        }
    }
    for (const { selector, style, values } of generated) {
        const lost = values.filter(([name, value]) => style[name] !== value);
        const declarations = lost.map(([name, value]) => `${name}:${value}!important`).join(';');
        layer.insertRule(`${selector}{${declarations}}`, layer.cssRules.length);
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
