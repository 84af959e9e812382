#include "Platform/Engine/Scripts/PageScripts.h"

#include <array>
#include <string_view>

namespace qrv::engine {
namespace {

constexpr std::string_view measuring = R"js((() => {
    const property = (name) =>
        Object.getOwnPropertyDescriptor(Document.prototype, name).get.call(document);
    const root = property('documentElement');
    if (!root) return {viewWidth: innerWidth, viewHeight: innerHeight};
    const body = property('body') instanceof HTMLBodyElement ? property('body') : null;
    const scroller = property('scrollingElement') || root;
    const scrolled = (name) => Object.getOwnPropertyDescriptor(Element.prototype, name).get.call(scroller);
    scrollTo({left: 0, top: 0, behavior: 'instant'});

    // Nothing moves from here to the print: what has an end in time is there, the rest stands still.
    for (const animation of Document.prototype.getAnimations.call(document)) {
        const endsInTime = animation.timeline instanceof DocumentTimeline &&
            Number.isFinite(animation.effect?.getComputedTiming().endTime);
        try {
            if (endsInTime) {
                animation.finish();
            } else {
                animation.pause();
                animation.currentTime = animation.currentTime;
            }
        } catch {
            // One that scripts have made neither: it goes on.
        }
    }

    const rootStyle = getComputedStyle(root);
    const bodyStyle = body ? getComputedStyle(body) : rootStyle;
    const px = (style, name) => parseFloat(style[name]) || 0;
    const rootZoom = px(rootStyle, 'zoom') || 1;
    const bodyZoom = body && px(bodyStyle, 'zoom') || 1;
    const edge = (name) => px(rootStyle, name) * rootZoom;
    const isTransformed = (style) =>
        ['transform', 'translate', 'rotate', 'scale'].some((name) => style[name] !== 'none');
    const isMoved = isTransformed(rootStyle) || isTransformed(bodyStyle);
    const rootBox = root.getBoundingClientRect();
    const bodyBox = (body || root).getBoundingClientRect();
    const contentLeft = rootBox.left + edge('borderLeftWidth') + edge('paddingLeft');

    // A box's size as if box-sizing were content-box.
    const contentSize = (style, size, edges) => {
        const used = px(style, size);
        return style.boxSizing === 'border-box'
            ? Math.max(0, edges.reduce((rest, name) => rest - px(style, name), used)) : used;
    };
    const hasAutoHeight = (element) => String(element.computedStyleMap().get('height')) === 'auto';
    const across = ['borderLeftWidth', 'paddingLeft', 'paddingRight', 'borderRightWidth'];
    const along = ['borderTopWidth', 'paddingTop', 'paddingBottom', 'borderBottomWidth'];

    const isHtml = root instanceof HTMLHtmlElement;
    const isContained = (style) => style.contain !== 'none' || style.containerType !== 'normal';
    const rootContainsFixed = isTransformed(rootStyle) || isContained(rootStyle) ||
        rootStyle.perspective !== 'none' || rootStyle.transformStyle === 'preserve-3d' ||
        /transform|translate|rotate|scale|perspective|contain/.test(rootStyle.willChange);
    const canSpread = isHtml && body && !isContained(rootStyle) && !isContained(bodyStyle);
    // Each layer's image: the function that makes it, and the first string among its arguments.
    const images = (style) => {
        const strings = [];
        let layers = style.backgroundImage.replace(/"((?:[^"\\]|\\.)*)"/g, (all, text) => {
            strings.push(text.replace(/\\(.)/g, '$1'));
            return '[' + (strings.length - 1) + ']';
        });
        for (let length = -1; length !== layers.length;) {
            length = layers.length;
            layers = layers.replace(/\((?:[^()\[\]]*(\[\d+\]))?[^()]*\)/g, '$1');
        }
        return layers.split(',').map((layer) => {
            const [kind, first] = layer.trim().split(/[[\]]/);
            return {kind, text: strings[first]};
        });
    };
    const hasImage = (style) => images(style).some(({kind}) => kind !== 'none');
    // Width over height, 0 where the image has none or is not at hand: nothing is fetched.
    const ratio = ({kind, text}) => {
        if (text === undefined || kind.endsWith('gradient')) return 0;
        const image = new Image();
        image.src = text;
        const known = image.complete ? image.naturalWidth / image.naturalHeight : 0;
        image.src = '';
        return known || 0;
    };
    const hasBackground = (style) => hasImage(style) || style.backgroundColor !== 'rgba(0, 0, 0, 0)';
    const canvasFromBody = Boolean(canSpread && !hasBackground(rootStyle) && hasBackground(bodyStyle));
    const canvas = canvasFromBody ? bodyStyle : rootStyle;

    // The engine goes through an element's children anew for each of them.
    let structureCost = 0;
    const childCount = Object.getOwnPropertyDescriptor(Element.prototype, 'childElementCount').get;
    for (const element of Document.prototype.querySelectorAll.call(document, '*')) {
        structureCost += childCount.call(element) ** 2;
    }

    return {
        structureCost,
        viewWidth: innerWidth,
        viewHeight: innerHeight,
        scrollWidth: scrolled('scrollWidth'),
        scrollHeight: scrolled('scrollHeight'),
        isQuirky: property('compatMode') === 'BackCompat',
        rootIsHtml: isHtml,
        hasBody: Boolean(body),
        rootDisplay: rootStyle.display,
        rootZoom,
        bodyZoom,
        bodyWritingMode: bodyStyle.writingMode,
        bodyDirection: bodyStyle.direction,
        rootMarginTop: isMoved ? edge('marginTop') : rootBox.top,
        rootMarginBottom: edge('marginBottom'),
        rootMarginLeft: isMoved ? edge('marginLeft') : rootBox.left,
        rootBorderTop: edge('borderTopWidth'),
        rootBorderRight: edge('borderRightWidth'),
        rootBorderBottom: edge('borderBottomWidth'),
        rootBorderLeft: edge('borderLeftWidth'),
        rootBorderTopColor: rootStyle.borderTopColor,
        rootBorderRightColor: rootStyle.borderRightColor,
        rootBorderBottomColor: rootStyle.borderBottomColor,
        rootBorderLeftColor: rootStyle.borderLeftColor,
        rootPaddingTop: edge('paddingTop'),
        rootPaddingRight: edge('paddingRight'),
        rootPaddingBottom: edge('paddingBottom'),
        rootPaddingLeft: edge('paddingLeft'),
        rootWidth: contentSize(rootStyle, 'width', across) * rootZoom,
        rootHeight: contentSize(rootStyle, 'height', along) * rootZoom,
        rootHeightIsAuto: hasAutoHeight(root),
        rootIsContainer: rootStyle.position !== 'static' || rootContainsFixed,
        rootContainsFixed,
        rootHasEffect: Boolean(property('head')) && (rootStyle.opacity !== '1' ||
            ['filter', 'clipPath', 'maskImage'].some((name) => rootStyle[name] !== 'none')),
        bodyMarginLeft: isMoved ? px(bodyStyle, 'marginLeft') : (bodyBox.left - contentLeft) / rootZoom / bodyZoom,
        bodyWidth: contentSize(bodyStyle, 'width', across),
        bodyHeight: contentSize(bodyStyle, 'height', along),
        bodyHeightIsAuto: hasAutoHeight(body || root),
        bodyOverflowSpreads: Boolean(canSpread && rootStyle.overflowX === 'visible'),
        canvasFromBody,
        canvasHasImage: hasImage(canvas),
        canvasImages: images(canvas).map(({kind}) => kind).join(),
        canvasRatios: images(canvas).map(ratio).join(),
        canvasOrigin: canvas.backgroundOrigin.split(',')[0],
        canvasIsFixed: canvas.backgroundAttachment.includes('fixed'),
        canvasColor: canvas.backgroundColor,
        canvasPositionX: canvas.backgroundPositionX,
        canvasPositionY: canvas.backgroundPositionY,
        canvasSize: canvas.backgroundSize,
        canvasRepeat: canvas.backgroundRepeat,
    };
})())js";

// Where a policy forbids style elements, an adopted sheet is still allowed; it comes last, so that only the
// document's own layers are stronger.
// Important declarations of style attributes are stronger than any sheet, hence they lose their importance.
constexpr std::string_view applying = R"js(((text, target, source, imagesOnTop, releasesBoxes) => {
    const accessor = (name) => Object.getOwnPropertyDescriptor(Document.prototype, name);
    const property = (name) => accessor(name).get.call(document);
    const root = property('documentElement');
    const body = property('body');
    const takeBack = Symbol.for('web2pdf-print');
    globalThis[takeBack]?.();
    if (source) {
        text += '@layer web2pdf-print{' + target + '{background-image:' + imagesOnTop +
            getComputedStyle({root, body}[source]).backgroundImage + '!important}}';
    }
    const element = Document.prototype.createElementNS.call(document, 'http://www.w3.org/1999/xhtml', 'style');
    element.textContent = text;
    if (root) Element.prototype.prepend.call(property('head') || root, element);
    let sheet = element.sheet;
    if (!sheet) {
        sheet = new CSSStyleSheet();
        sheet.replaceSync(text);
        accessor('adoptedStyleSheets').set.call(document, [sheet, ...property('adoptedStyleSheets')]);
    }
    globalThis[takeBack] = () => {
        element.remove();
        accessor('adoptedStyleSheets').set.call(
            document, property('adoptedStyleSheets').filter((adopted) => adopted !== sheet));
    };
    for (const layer of sheet.cssRules) {
        for (const rule of layer.cssRules) {
            const target = {html: root, body}[rule.selectorText];
            if (!target) continue;
            for (const name of rule.style) {
                if (target.style.getPropertyPriority(name) === '') continue;
                target.style.setProperty(name, target.style.getPropertyValue(name), '');
            }
        }
    }
    if (releasesBoxes) {
        const all = (selector) => Document.prototype.querySelectorAll.call(document, selector);
        const style = Object.getOwnPropertyDescriptor(HTMLElement.prototype, 'style').get;
        const set = (box, values) => {
            for (const name in values) style.call(box).setProperty(name, values[name], 'important');
        };
        for (const box of all('*')) {
            if (!(box instanceof HTMLElement) || getComputedStyle(box).position !== 'sticky') continue;
            set(box, {position: 'relative', inset: 'auto'});
        }
        // Boxes of the top layer are on every sheet.
        const takeDown = (box, leaveTopLayer) => {
            const {left, top, width, height} = Element.prototype.getBoundingClientRect.call(box);
            const {display} = getComputedStyle(box);
            leaveTopLayer();
            set(box, {display, position: 'fixed', inset: `${top}px auto auto ${left}px`, margin: 0,
                'z-index': 2 ** 31 - 1, 'box-sizing': 'border-box', width: `${width}px`, height: `${height}px`,
                'max-width': 'none', 'max-height': 'none'});
        };
        for (const dialog of all('dialog:modal')) {
            takeDown(dialog, () => {
                HTMLDialogElement.prototype.close.call(dialog);
                HTMLDialogElement.prototype.show.call(dialog);
            });
        }
        for (const box of all(':popover-open')) {
            takeDown(box, () => HTMLElement.prototype.hidePopover.call(box));
        }
    }
    return sheet.cssRules.length > 0;
})js";

// A literal that also survives being part of an HTML document.
std::string scriptString(std::string_view text) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string literal = "'";
    for (char c : text) {
        auto code = static_cast<unsigned char>(c);
        if (code < 0x20 || c == '\'' || c == '\\' || c == '<') {
            literal += "\\x";
            literal += digits[code >> 4];
            literal += digits[code & 15];
        } else {
            literal += c;
        }
    }
    return literal + "'";
}

} // namespace

std::string measuringScript() {
    return std::string(measuring);
}

std::string applyingScript(const PrintPlan& plan) {
    return std::string(applying) + ")(" + scriptString(plan.styleSheet) + "," +
           scriptString(plan.imageTarget) + "," + scriptString(plan.imageSource) + "," +
           scriptString(plan.imagesOnTop) + "," + (plan.releasesBoxes ? "true" : "false") + ")";
}

} // namespace qrv::engine
