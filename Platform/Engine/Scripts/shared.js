// What the page scripts share. Evaluated in the isolated world before any of them is called; a second time does no
// harm. A page can hide properties of its document and of its forms behind elements of the same name, so that
// everything is read past them, through the prototypes.

/** The value of a property that an interface declares. */
function read(declaring, name, object) {
    return getterOf(declaring, name).call(object);
}

/** What reads that property. It is looked up once: walks read the same ones of every element. */
function getterOf(declaring, name) {
    getterOf.known ??= new Map();
    if (!getterOf.known.has(declaring)) getterOf.known.set(declaring, new Map());
    const getters = getterOf.known.get(declaring);
    if (!getters.has(name)) {
        getters.set(name, Object.getOwnPropertyDescriptor(declaring.prototype, name).get);
    }
    return getters.get(name);
}

/** A property of a document. */
function property(name, content = document) {
    return read(Document, name, content);
}

/** A property that every element has. */
function elementProperty(name, element) {
    return read(Element, name, element);
}

/** An attribute as it is written; empty when there is none. */
function attribute(element, name) {
    return Element.prototype.getAttribute.call(element, name) || '';
}

/** The declarations of an element's style attribute; nothing for elements of foreign kinds, which have none. */
function styleOf(element) {
    const declaring = [HTMLElement, SVGElement, MathMLElement].find((one) => element instanceof one);
    return declaring && read(declaring, 'style', element);
}

/** Sets declarations that no style sheet of the page can overrule. */
function set(element, values) {
    for (const name in values) styleOf(element)?.setProperty(name, values[name], 'important');
}

/** The elements right in an element. */
function elementsIn(element) {
    return [...elementProperty('children', element)];
}

/** Whether there is text right in an element. */
function hasText(element) {
    return [...read(Node, 'childNodes', element)].some(
        (node) =>
            read(Node, 'nodeType', node) === Node.TEXT_NODE &&
            read(CharacterData, 'data', node).trim() !== '',
    );
}

/** False for shadow trees. */
function isDocument(content) {
    return read(Node, 'nodeType', content) === Node.DOCUMENT_NODE;
}

/** The elements of a document or shadow tree that match, in its order. */
function query(selectors, content = document) {
    const { prototype } = isDocument(content) ? Document : DocumentFragment;
    return [...prototype.querySelectorAll.call(content, selectors)];
}

/** A walk through a document or shadow tree and all open shadow trees in it: these trees, and the elements of one after
 * the other. */
function walk(content) {
    const shadowRootOf = getterOf(Element, 'shadowRoot');
    const walker = Document.prototype.createTreeWalker.call(document, content, NodeFilter.SHOW_ELEMENT);
    const elements = [];
    const inner = [];
    for (let element = walker.nextNode(); element; element = walker.nextNode()) {
        elements.push(element);
        const tree = shadowRootOf.call(element);
        if (tree) inner.push(walk(tree));
    }
    return {
        trees: [content, ...inner.flatMap((one) => one.trees)],
        elements: [elements, ...inner.map((one) => one.elements)].flat(),
    };
}

/** The walk through the document; remembered from `keepWalk` on. */
function walkOfDocument() {
    return keepWalk.kept ?? walk(document);
}

/** To be called when nothing is added to the document any more, and again when something was. */
function keepWalk() {
    keepWalk.kept = walk(document);
}

/** The element whose overflow the view scrolls; the root where there is none. */
function scroller() {
    return scrollerOf(document);
}

function scrollerOf(content) {
    return property('scrollingElement', content) || property('documentElement', content);
}

/** The document's height with its overflow, px; 0 without a root. */
function scrolledHeight() {
    return scroller() ? elementProperty('scrollHeight', scroller()) : 0;
}

/** The height of a view in which all of the document is seen, px: that of its overflow, or of the box in it that a
 * reader scrolls in its stead. */
function documentHeight() {
    const hidden = fillingScrollers().map(unseenDown);
    return Math.max(scrolledHeight(), innerHeight + Math.max(0, ...hidden));
}

/** Settled when the page has been laid out and painted once more. */
function nextFrame() {
    return new Promise((done) => requestAnimationFrame(() => setTimeout(done, 0)));
}

function scrollToTop(top) {
    scrollTo({ left: 0, top, behavior: 'instant' });
}

/** The document and all open shadow trees in it. */
function trees() {
    return walkOfDocument().trees;
}

/** Calls a function with each style sheet of a document or shadow tree, and with each rule that can be read. Answers
 * whether all could. */
function visitRules(content, visitor) {
    let couldAll = true;
    const rulesOf = (sheetOrRule) => {
        try {
            return sheetOrRule.cssRules ?? [];
        } catch {
            // Of another origin.
            couldAll = false;
            return [];
        }
    };
    const visit = (sheetOrRule) => {
        visitor(sheetOrRule);
        if (sheetOrRule.styleSheet) visit(sheetOrRule.styleSheet);
        for (const rule of rulesOf(sheetOrRule)) visit(rule);
    };
    const owner = isDocument(content) ? Document : ShadowRoot;
    for (const list of ['styleSheets', 'adoptedStyleSheets']) {
        for (const sheet of read(owner, list, content)) visit(sheet);
    }
    return couldAll;
}

/** Calls a function with the name and the value of each declaration in the document's style sheets, and in those style
 * attributes that have one of these words; the value of a shorthand may be empty. Answers whether that is all: it is not
 * where a sheet cannot be read or scripts animate something. Sheets of closed shadow trees are not known of. */
function visitDeclarations(words, visitor) {
    const visit = (style) => {
        for (const name of style ?? []) visitor(name, style.getPropertyValue(name));
    };
    // What is escaped may be any word.
    const selectors = [...words, '\\\\'].map((word) => `[style*="${word}" i]`).join();
    let isAll = animations().every((one) => one instanceof CSSAnimation || one instanceof CSSTransition);
    for (const content of trees()) {
        if (!visitRules(content, (sheetOrRule) => visit(sheetOrRule.style))) isAll = false;
        for (const element of query(selectors, content)) visit(styleOf(element));
    }
    return isAll;
}

/** The elements before or after which a sheet of paper ends in any case. */
function breakingBoxes() {
    const forced = ['page', 'left', 'right', 'recto', 'verso'];
    let mayBreak = false;
    const areAll = visitDeclarations(['break'], (name, value) => {
        mayBreak ||= /^(page-)?break-(before|after)$/.test(name) && !/^(auto|avoid.*)$/.test(value);
    });
    if (!mayBreak && areAll) return [];
    return displayedTree().filter((element) => {
        const { breakBefore, breakAfter } = getComputedStyle(element);
        return (forced.includes(breakBefore) || forced.includes(breakAfter)) && isDisplayed(element);
    });
}

/** The page's document, those of its frames of the same origin, and all open shadow trees in them. */
function contents() {
    const found = [];
    const visitFrame = (frame) => {
        try {
            if (!frame.document) return;
        } catch {
            return;
        }
        found.push(...(frame === window ? trees() : walk(frame.document).trees));
        for (let i = 0; i < frame.length; ++i) visitFrame(frame[i]);
    };
    visitFrame(window);
    return found;
}

/** The elements of the document and of its open shadow trees, without those in frames. */
function displayedTree() {
    return walkOfDocument().elements;
}

/** Those of them whose contents may be cut off at the bottom or at a side, and the frames. Overflow to which one can
 * scroll in one direction is never plainly visible in the other. */
function clippingBoxes() {
    return displayedTree().filter(
        (box) =>
            !['visible', 'clip'].includes(getComputedStyle(box).overflowY) ||
            box instanceof HTMLIFrameElement,
    );
}

function isDisplayed(element) {
    return Element.prototype.checkVisibility.call(element, { visibilityProperty: true });
}

/** The element around an element as they are laid out. */
function parentOf(element) {
    return (
        element.assignedSlot ??
        read(Node, 'parentElement', element) ??
        Node.prototype.getRootNode.call(element).host
    );
}

/** All elements around an element as they are laid out, from the inside out. */
function ancestorsOf(element) {
    const found = [];
    for (let parent = parentOf(element); parent; parent = parentOf(parent)) found.push(parent);
    return found;
}

/** The elements of an element's subtree. */
function elementsBelow(element) {
    return [...Element.prototype.querySelectorAll.call(element, '*')];
}

/** What a box of the document, or a frame, holds below what it shows (px), if its overflow is of these kinds; else 0. */
function overflowDown(box, ...kinds) {
    let inner = box;
    if (box instanceof HTMLIFrameElement) {
        inner = box.scrolling === 'no' ? null : box.contentDocument && scrollerOf(box.contentDocument);
    }
    if (!inner) return 0;
    const hidden = elementProperty('scrollHeight', inner) - elementProperty('clientHeight', inner);
    if (hidden <= 1) return 0;
    const { overflowY } = getComputedStyle(inner);
    return [...kinds, inner === box ? '' : 'visible'].includes(overflowY) ? hidden : 0;
}

/** What a reader can scroll to in a box, px. */
function scrollableDown(box) {
    return overflowDown(box, 'auto', 'scroll');
}

/** The same for a box that fills the view. Scripts may have scrolled there what else is cut off, or given it its scroll
 * bar by a style that was not saved: as much as that is not for decoration. */
function unseenDown(box) {
    const muchOfTheView = 0.5;
    const hidden = box === property('body') ? 0 : overflowDown(box, 'hidden');
    return scrollableDown(box) || (hidden > innerHeight * muchOfTheView ? hidden : 0);
}

/** Of a document that does not scroll itself: the boxes in which it scrolls, as high as most of the view, outer ones
 * first. */
function fillingScrollers() {
    const scrollsALittle = 1.1;
    const leastHeight = 0.5;
    const leastArea = 0.3;
    if (scrolledHeight() > innerHeight * scrollsALittle) return [];
    return clippingBoxes().filter((box) => {
        if (box === scroller() || unseenDown(box) === 0 || !isDisplayed(box)) return false;
        const { left, top, right, bottom } = Element.prototype.getBoundingClientRect.call(box);
        const width = Math.min(right, innerWidth) - Math.max(left, 0);
        const height = Math.min(bottom, innerHeight) - Math.max(top, 0);
        return height > innerHeight * leastHeight && width * height > innerWidth * innerHeight * leastArea;
    });
}

/** Every image of the page and of its frames. */
function images() {
    return contents().flatMap((content) => query('img', content));
}

/** Everything that is animated in the document. */
function animations() {
    return Document.prototype.getAnimations.call(document);
}

/** What an image is chosen from: the sources beside it in its picture element, and itself. */
function choicesOf(image) {
    const parent = image.parentElement;
    if (parent?.localName !== 'picture') return [image];
    return [...[...parent.children].filter((child) => child.localName === 'source'), image];
}

/** The addresses in an element's srcset, absolute, with their descriptors ("2x", "300w" or nothing). */
function listed(element) {
    const resolved = (address) => {
        try {
            return new URL(address, element.baseURI).href;
        } catch {
            return '';
        }
    };
    const entries = attribute(element, 'srcset').matchAll(
        /([^\s,]\S*[^\s,]|[^\s,])(?:\s+([^\s,]+))?\s*(?:,|$)/g,
    );
    return [...entries].map(([, address, descriptor = '']) => ({ address: resolved(address), descriptor }));
}

/** The images that could not be had and were chosen among several: at most 1,000, without very long addresses. */
function failedImages() {
    const isPlain = (address) => address.length < 5000 && !address.startsWith('data:');
    return images()
        .flatMap((image) => {
            if (!image.complete || image.naturalWidth > 0 || !image.currentSrc) return [];
            const choices = choicesOf(image);
            const candidates = choices.flatMap(listed).map(({ address }) => address);
            if (candidates.length === 0) return [];
            if (attribute(image, 'src')) candidates.push(image.src);
            return [{ image, choices, chosen: image.currentSrc, candidates: candidates.filter(isPlain) }];
        })
        .slice(0, 1000);
}

/** What the links within the document lead to, by the fragment of their address; null is the document's start. */
function linkTargets() {
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
    const [address] = property('URL').split('#');
    const targets = new Map();
    for (const { href } of query('a[href*="#"],area[href*="#"]')) {
        const hash = String(href).indexOf('#');
        const fragment = String(href).slice(hash + 1);
        if (hash < 0 || href.slice(0, hash) !== address || targets.has(fragment)) continue;
        const target = withId(fragment) || withId(decoded(fragment));
        if (target) targets.set(fragment, target);
        else if (['', 'top'].includes(fragment.toLowerCase())) targets.set(fragment, null);
    }
    return targets;
}

/** Where the targets of inner links are that begin in a view from this height on, px from there; `start` answers the
 * height, and is asked only when there are links, since the page is laid out for it. */
function targetsInView(start) {
    const targets = linkTargets();
    if (targets.size === 0) return [];
    const from = start();
    return Array.from(targets, ([name, target]) => ({
        name,
        top: target ? Element.prototype.getClientRects.call(target)[0]?.top - from : 0,
    }))
        .filter(({ top }) => top < innerHeight)
        .map(({ name, top }) => ({ name, top: Math.max(0, top) }));
}

/** Settled by the first of these events. A <video>'s sources report their errors on the way down only. */
function firstOf(element, ...names) {
    return new Promise((done) => {
        for (const name of names) element.addEventListener(name, done, { once: true, capture: true });
    });
}

/** True while a film's first picture is on its way. */
function waitsForPicture(video) {
    return (
        video.networkState === HTMLMediaElement.NETWORK_LOADING &&
        video.readyState < HTMLMediaElement.HAVE_CURRENT_DATA
    );
}

/** Settled when a film has its first picture, or is not going to have one. */
function firstPicture(video) {
    return firstOf(video, 'loadeddata', 'error', 'emptied', 'suspend');
}
