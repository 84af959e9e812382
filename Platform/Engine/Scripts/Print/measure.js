// Answers the page's measurements (Print/PageMeasurements.h, which names the same fields). The page must be scrolled to
// its start and stand still. Nothing is changed, and nothing fetched.
() => {
    const view = { width: innerWidth, height: innerHeight };
    const root = property('documentElement');
    if (!root) return { view };
    const body = property('body') instanceof HTMLBodyElement ? property('body') : null;
    const rootStyle = getComputedStyle(root);
    const bodyStyle = body ? getComputedStyle(body) : rootStyle;

    const px = (style, name) => parseFloat(style[name]) || 0;
    const rootZoom = px(rootStyle, 'zoom') || 1;
    const bodyZoom = (body && px(bodyStyle, 'zoom')) || 1;
    const edge = (name) => px(rootStyle, name) * rootZoom;
    const edges = (name) => ({
        top: name('Top'),
        right: name('Right'),
        bottom: name('Bottom'),
        left: name('Left'),
    });

    // A box's size as if box-sizing were content-box.
    const contentSize = (style, size, around) => {
        const used = px(style, size);
        if (style.boxSizing !== 'border-box') return used;
        return Math.max(
            0,
            around.reduce((rest, name) => rest - px(style, name), used),
        );
    };
    const across = ['borderLeftWidth', 'paddingLeft', 'paddingRight', 'borderRightWidth'];
    const along = ['borderTopWidth', 'paddingTop', 'paddingBottom', 'borderBottomWidth'];
    const hasAutoHeight = (element) => String(element.computedStyleMap().get('height')) === 'auto';

    const isTransformed = (style) =>
        ['transform', 'translate', 'rotate', 'scale'].some((name) => style[name] !== 'none');
    const isContained = (style) => style.contain !== 'none' || style.containerType !== 'normal';
    const containsFixed =
        isTransformed(rootStyle) ||
        isContained(rootStyle) ||
        rootStyle.perspective !== 'none' ||
        rootStyle.transformStyle === 'preserve-3d' ||
        /transform|translate|rotate|scale|perspective|contain/.test(rootStyle.willChange);
    const isHtml = root instanceof HTMLHtmlElement;
    // The view takes the body's overflow, and the canvas its background, unless something keeps them in.
    const canSpread = isHtml && body && !isContained(rootStyle) && !isContained(bodyStyle);

    // Each layer's image: the function that makes it, and the first string among its arguments.
    const layersOf = (style) => {
        const strings = [];
        let layers = style.backgroundImage.replace(/"((?:[^"\\]|\\.)*)"/g, (all, text) => {
            strings.push(text.replace(/\\(.)/g, '$1'));
            return '[' + (strings.length - 1) + ']';
        });
        for (let length = -1; length !== layers.length;) {
            length = layers.length;
            layers = layers.replace(/\((?:[^()[\]]*(\[\d+\]))?[^()]*\)/g, '$1');
        }
        return layers.split(',').map((layer) => {
            const [kind, first] = layer.trim().split(/[[\]]/);
            return { kind, text: strings[first] };
        });
    };
    const hasImage = (style) => layersOf(style).some(({ kind }) => kind !== 'none');
    const hasBackground = (style) => hasImage(style) || style.backgroundColor !== 'rgba(0, 0, 0, 0)';
    // Width over height, 0 where the image has none or is not at hand.
    const ratio = ({ kind, text }) => {
        if (text === undefined || kind.endsWith('gradient')) return 0;
        const image = new Image();
        image.src = text;
        const known = image.complete ? image.naturalWidth / image.naturalHeight : 0;
        image.src = '';
        return known || 0;
    };

    // Boxes that are moved by a transformation are not where their margins put them.
    const isMoved = isTransformed(rootStyle) || isTransformed(bodyStyle);
    const rootBox = root.getBoundingClientRect();
    const bodyBox = (body || root).getBoundingClientRect();
    const contentLeft = rootBox.left + edge('borderLeftWidth') + edge('paddingLeft');
    const canvasFromBody = Boolean(canSpread && !hasBackground(rootStyle) && hasBackground(bodyStyle));
    const canvas = canvasFromBody ? bodyStyle : rootStyle;

    // The engine goes through all of an element's children for each of them when it makes a structure tree.
    const childrenOf = getterOf(Element, 'childElementCount');
    let structureCost = 0;
    for (const element of displayedTree()) structureCost += childrenOf.call(element) ** 2;

    return {
        view,
        scroll: {
            width: elementProperty('scrollWidth', scroller()),
            height: elementProperty('scrollHeight', scroller()),
        },
        isQuirky: property('compatMode') === 'BackCompat',
        structureCost,
        root: {
            isHtml,
            display: rootStyle.display,
            zoom: rootZoom,
            marginTop: isMoved ? edge('marginTop') : rootBox.top,
            marginBottom: edge('marginBottom'),
            marginLeft: isMoved ? edge('marginLeft') : rootBox.left,
            border: edges((side) => edge(`border${side}Width`)),
            borderColor: edges((side) => rootStyle[`border${side}Color`]),
            padding: edges((side) => edge(`padding${side}`)),
            width: contentSize(rootStyle, 'width', across) * rootZoom,
            height: contentSize(rootStyle, 'height', along) * rootZoom,
            heightIsAuto: hasAutoHeight(root),
            isContainer: rootStyle.position !== 'static' || containsFixed,
            containsFixed,
            hasEffect:
                Boolean(property('head')) &&
                (rootStyle.opacity !== '1' ||
                    ['filter', 'clipPath', 'maskImage'].some((name) => rootStyle[name] !== 'none')),
        },
        body: {
            exists: Boolean(body),
            zoom: bodyZoom,
            writingMode: bodyStyle.writingMode,
            direction: bodyStyle.direction,
            marginLeft: isMoved
                ? px(bodyStyle, 'marginLeft')
                : (bodyBox.left - contentLeft) / rootZoom / bodyZoom,
            width: contentSize(bodyStyle, 'width', across),
            height: contentSize(bodyStyle, 'height', along),
            heightIsAuto: hasAutoHeight(body || root),
            overflowSpreads: Boolean(canSpread && rootStyle.overflowX === 'visible'),
        },
        canvas: {
            isBody: canvasFromBody,
            hasImage: hasImage(canvas),
            images: layersOf(canvas)
                .map(({ kind }) => kind)
                .join(),
            ratios: layersOf(canvas).map(ratio).join(),
            origin: canvas.backgroundOrigin.split(',')[0],
            isFixed: canvas.backgroundAttachment.includes('fixed'),
            color: canvas.backgroundColor,
            positionX: canvas.backgroundPositionX,
            positionY: canvas.backgroundPositionY,
            size: canvas.backgroundSize,
            repeat: canvas.backgroundRepeat,
        },
    };
};
