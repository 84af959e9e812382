// Puts a print's style sheet into the page, in the place of an earlier one. The element that `imageTarget` selects gets
// background images: `imagesOnTop` (CSS, with a comma behind each), then those that the root or the body has, as
// `imageSource` says ("root", "body"; empty: its own stay). Answers whether the sheet is in force. There is no way
// back, so that printing is the next and last thing to do.
//
// It is stronger than the document's own sheets: by its selectors, or where that is not enough as the first layer. The
// first layer of a document has all of it laid out anew.
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

    const valuesOf = (child, names) => {
        const values = Element.prototype.computedStyleMap.call(child);
        return names.map((name) => [name, String(values.get(name))]);
    };
    const probe = new CSSStyleSheet();
    probe.replaceSync(styleSheet);
    const declarationsOn = (selector) => [
        ...[...probe.cssRules]
            .filter((rule) => rule.selectorText === selector)
            .flatMap(({ style }) => [...style].map((name) => [name, style.getPropertyValue(name)])),
        ...(imageSource && imageTarget === selector ? [['background-image', '']] : []),
    ];
    // The properties that get another value than they have.
    const changedOn = (selector, target) => {
        const values = target && Element.prototype.computedStyleMap.call(target);
        return declarationsOn(selector)
            .filter(([name, value]) => value !== String(values?.get(name)))
            .map(([name]) => name);
    };
    const changedOnRoot = changedOn('html', root);
    const changedOnBody = changedOn('body', body);
    const setOnBody = declarationsOn('body').map(([name]) => name);

    // Who inherits is asked before and after, which lays the page out once more: only where somebody may.
    const inherited = new Set();
    const isKnown = visitDeclarations(['inherit'], (name, value) => {
        if (value === '' || value.includes('inherit')) inherited.add(name);
    });
    const hasOtherNames = [...inherited].some((name) => name === 'all' || /block|inline/.test(name));
    const mayBeInherited = (name) => !isKnown || hasOtherNames || inherited.has(name);
    // These go to the root's children in any case. The body gets the values that it has.
    const fromRoot = (name) => ['direction', 'writing-mode'].includes(name) || mayBeInherited(name);
    const heirsOf = (parent, names) =>
        (names.length > 0 && parent ? elementsIn(parent) : [])
            .slice(0, mostHeirs)
            .filter((child) => child !== body && child.localName !== imageTarget)
            .map((child) => ({ child, values: valuesOf(child, names) }));
    const heirs = [
        ...heirsOf(root, changedOnRoot.filter(fromRoot)),
        ...heirsOf(body, changedOnBody.filter(mayBeInherited)),
    ];
    const givenToBody = changedOnRoot.filter((name) => fromRoot(name) && !setOnBody.includes(name));
    if (body && givenToBody.length > 0) heirs.push({ child: body, values: valuesOf(body, givenToBody) });
    // Places and sizes of generated boxes are known as they are used only, which is as they will be.
    const isPlaced = (name) => /^(inset|top|right|bottom|left|margin|padding|.*width|.*height)/.test(name);
    const generatedOf = (selector, owner, names) =>
        ['::before', '::after'].flatMap((pseudo) => {
            const style = owner && getComputedStyle(owner, pseudo);
            if (!style || style.content === 'none') return [];
            const values = names.filter((name) => !isPlaced(name)).map((name) => [name, style[name]]);
            return [{ selector: selector + pseudo, style, values }];
        });
    const generated = [
        ...generatedOf('html', root, changedOnRoot),
        ...generatedOf('body', body, changedOnBody),
    ];

    // Layers that are important are stronger than any selector, and pages without a name are the weakest.
    const isOrHasLayer = (rule) =>
        rule instanceof CSSLayerBlockRule ||
        rule instanceof CSSLayerStatementRule ||
        typeof rule.layerName === 'string';
    const isUnnamedPage = (rule) => rule instanceof CSSPageRule && rule.selectorText === '';
    let isLayer = [...probe.cssRules].some(isUnnamedPage);
    const couldAll = visitRules(document, (rule) => {
        isLayer ||= isOrHasLayer(rule);
    });
    isLayer ||= !couldAll;
    const text = isLayer ? `@layer web2pdf-print{${styleSheet}}` : styleSheet;
    // No element has two identifiers.
    const strength = ':not(#a#b)'.repeat(4);
    const strengthened = (selectors) =>
        selectors
            .split(/,(?![^(]*\))/)
            .map((selector) => selector.trim().replace(/(?=::|$)/, strength))
            .join();

    const element = Document.prototype.createElementNS.call(
        document,
        'http://www.w3.org/1999/xhtml',
        'style',
    );
    element.textContent = text;
    if (root) Element.prototype.prepend.call(property('head') || root, element);
    // Where a policy forbids style elements, an adopted sheet is still allowed; as a layer it comes last, so that the
    // document's own layers are stronger.
    let sheet = element.sheet;
    if (!sheet) {
        sheet = new CSSStyleSheet();
        sheet.replaceSync(text);
        accessor('adoptedStyleSheets').set.call(document, [sheet, ...property('adoptedStyleSheets')]);
    }
    globalThis[takeBack] = () => {
        element.remove();
        const others = property('adoptedStyleSheets').filter((adopted) => adopted !== sheet);
        accessor('adoptedStyleSheets').set.call(document, others);
    };
    const holder = isLayer ? sheet.cssRules[0] : sheet;
    const add = (rule) => holder.insertRule(rule, holder.cssRules.length);
    if (imageSource) add(`${imageTarget}{background-image:${imagesOnTop}${images}!important}`);
    for (const { child, values } of heirs) {
        const now = Element.prototype.computedStyleMap.call(child);
        for (const [name, value] of values) {
            if (String(now.get(name)) !== value) styleOf(child)?.setProperty(name, value, 'important');
        }
    }
    for (const { selector, style, values } of generated) {
        const lost = values.filter(([name, value]) => style[name] !== value);
        const declarations = lost.map(([name, value]) => `${name}:${value}!important`).join(';');
        add(`${selector}{${declarations}}`);
    }
    // Important declarations of style attributes are stronger than any sheet: they lose their importance.
    const rules = holder?.cssRules ?? [];
    for (const rule of rules) {
        const target = { html: root, body }[rule.selectorText];
        if (!target) continue;
        for (const name of rule.style) {
            if (target.style.getPropertyPriority(name) === '') continue;
            target.style.setProperty(name, target.style.getPropertyValue(name), '');
        }
    }
    for (const rule of isLayer ? [] : rules) {
        if (rule instanceof CSSStyleRule) rule.selectorText = strengthened(rule.selectorText);
    }
    return rules.length > 0;
};
