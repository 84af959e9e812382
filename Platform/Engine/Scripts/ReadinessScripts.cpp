#include "Platform/Engine/Scripts/ReadinessScripts.h"

#include "Platform/Engine/DevTools/Json.h"

#include <string_view>

namespace qrv::engine {
namespace {

// What is known of the view, kept in the world under a name that no element can have: whether it is held, and
// the size that the page knows.
constexpr std::string_view viewHolding = R"js((() => {
    if (window !== top) return;
    const view = {held: false, width: innerWidth, height: innerHeight};
    globalThis[Symbol.for('web2pdf-view')] = view;
    const notice = (event) => {
        if (!view.held) {
            view.width = innerWidth;
            view.height = innerHeight;
        } else if (event.isTrusted) {
            event.stopImmediatePropagation();
        }
    };
    for (const target of [window, visualViewport]) {
        for (const type of ['resize', 'scroll', 'scrollend']) target.addEventListener(type, notice, true);
    }
})())js";

// Parts that several scripts share.
constexpr std::string_view common = R"js(
    const property = (name, content = document) =>
        Object.getOwnPropertyDescriptor(Document.prototype, name).get.call(content);
    const nodeType = Object.getOwnPropertyDescriptor(Node.prototype, 'nodeType').get;
    const shadowRoot = Object.getOwnPropertyDescriptor(Element.prototype, 'shadowRoot').get;
    const isDocument = (content) => nodeType.call(content) === Node.DOCUMENT_NODE;
    const query = (content, selectors) => {
        const type = isDocument(content) ? Document : DocumentFragment;
        return [...type.prototype.querySelectorAll.call(content, selectors)];
    };
    const scroller = () => property('scrollingElement') || property('documentElement');
    const documentHeight = () => {
        const height = Object.getOwnPropertyDescriptor(Element.prototype, 'scrollHeight').get;
        return scroller() ? height.call(scroller()) : 0;
    };
    const contents = () => {
        const found = [];
        const visit = (content) => {
            found.push(content);
            for (const element of query(content, '*')) {
                const tree = shadowRoot.call(element);
                if (tree) visit(tree);
            }
        };
        const visitFrame = (frame) => {
            try {
                if (!frame.document) return;
            } catch {
                return;
            }
            visit(frame.document);
            for (let i = 0; i < frame.length; ++i) visitFrame(frame[i]);
        };
        visitFrame(window);
        return found;
    };
    // An element's sources tell of their failures themselves, which it sees on their way down only.
    const firstOf = (element, ...names) => new Promise((done) => {
        for (const name of names) element.addEventListener(name, done, {once: true, capture: true});
    });
    const pictureEvents = ['loadeddata', 'error', 'emptied', 'suspend'];
    const waitsForPicture = (video) => video.networkState === HTMLMediaElement.NETWORK_LOADING &&
        video.readyState < HTMLMediaElement.HAVE_CURRENT_DATA;
    const images = () => contents().flatMap((content) => query(content, 'img'));
    const attribute = (element, name) => Element.prototype.getAttribute.call(element, name) || '';
    // What an image is chosen from: its own attributes, and those of sources beside it.
    const choicesOf = (image) => {
        const parent = image.parentElement;
        const sources = parent && parent.localName === 'picture'
            ? [...parent.children].filter((child) => child.localName === 'source') : [];
        return [...sources, image];
    };
    const resolved = (address, image) => {
        try {
            return new URL(address, image.baseURI).href;
        } catch {
            return '';
        }
    };
    const isPlain = (address) => address.length < 5000 && !address.startsWith('data:');
    const listed = (element) => [...attribute(element, 'srcset')
        .matchAll(/([^\s,]\S*[^\s,]|[^\s,])(?:\s+([^\s,]+))?\s*(?:,|$)/g)]
        .map(([, address, descriptor = '']) => ({address: resolved(address, element), descriptor}));
    const failed = () => images().flatMap((image) => {
        if (!image.complete || image.naturalWidth > 0 || !image.currentSrc) return [];
        const choices = choicesOf(image);
        const candidates = choices.flatMap(listed).map(({address}) => address);
        if (candidates.length === 0) return [];
        if (attribute(image, 'src')) candidates.push(image.src);
        return [{image, choices, chosen: image.currentSrc, candidates: candidates.filter(isPlain)}];
    }).slice(0, 1000);
)js";

// The engine shows a single picture or film in the middle of a dark view and fits it in; here it is a page
// like any other, in its natural size, and a film is shown by its first picture.
constexpr std::string_view presenting = R"js(
    const isPresented = Symbol.for('web2pdf-presented');
    const mediaStyle = 'html,body{height:auto!important;margin:0!important;background:none!important}' +
        'img,video{position:static!important;display:block!important;margin:0!important;' +
        'background:none!important;transition:none!important}' +
        'img,video:not([controls]){width:auto!important;height:auto!important;' +
        'max-width:none!important;max-height:none!important}';
    const presentMedia = async () => {
        const body = property('body');
        const isMedia = /^(image|video|audio)[/]/.test(property('contentType')) && body && property('head');
        if (!isMedia || globalThis[isPresented]) return;
        globalThis[isPresented] = true;
        const style = Document.prototype.createElement.call(document, 'style');
        style.textContent = mediaStyle;
        property('head').append(style);
        const [video] = query(document, 'video');
        if (!video) return;
        video.autoplay = false;
        if (waitsForPicture(video)) await firstOf(video, ...pictureEvents);
        video.pause();
        if (video.videoWidth === 0) return;
        video.controls = false;
        if (video.currentTime === 0) return;
        video.currentTime = 0;
        await firstOf(video, 'seeked');
    };
)js";

constexpr std::string_view awaiting = R"js(
    const pending = [presentMedia()];
    for (const content of contents()) {
        if (isDocument(content)) pending.push(property('fonts', content).ready);
        for (const image of query(content, 'img')) {
            if (!image.complete) pending.push(firstOf(image, 'load', 'error'));
        }
        for (const video of query(content, 'video')) {
            if (waitsForPicture(video)) pending.push(firstOf(video, ...pictureEvents));
        }
    }
    const answer = () => ({documentHeight: documentHeight(), viewHeight: innerHeight,
        failed: failed().map(({chosen, candidates}) => ({chosen, candidates}))});
    return Promise.race([
        Promise.all(pending).then(answer),
        new Promise((done) => setTimeout(() => done(answer()), limit)),
    ]);
)js";

// A source that is left counts whatever the view: the page was saved in another.
constexpr std::string_view substituting = R"js(
    const held = new Set(addresses);
    for (const {image, choices, chosen, candidates} of failed()) {
        if (held.has(chosen) || !candidates.some((candidate) => held.has(candidate))) continue;
        for (const choice of choices) {
            const kept = listed(choice).filter(({address}) => held.has(address));
            if (kept.length === 0) {
                choice.removeAttribute('srcset');
            } else {
                choice.removeAttribute('media');
                choice.srcset = kept.map(({address, descriptor}) => `${address} ${descriptor}`).join(', ');
            }
        }
        if (!held.has(image.src)) image.removeAttribute('src');
    }
)js";

// The size that the view has at last is told first, since the event for it may not have come yet and would be
// kept from the page.
constexpr std::string_view holding = R"js(
    const view = globalThis[Symbol.for('web2pdf-view')];
    if (!view) return;
    if (view.width !== innerWidth || view.height !== innerHeight) dispatchEvent(new Event('resize'));
    view.held = true;
)js";

// Images that wait carry their address in some attribute of data for scripts.
constexpr std::string_view revealing = R"js(
    const steps = 10;
    const patience = 300;
    const end = performance.now() + limit;
    const after = (time) => new Promise((done) => setTimeout(done, time));
    const frame = () => new Promise((done) => requestAnimationFrame(() => setTimeout(done, 0)));
    const scroll = (top) => scrollTo({left: 0, top, behavior: 'instant'});
    const isWaiting = (image) => (image.naturalWidth <= 1 || image.currentSrc.startsWith('data:')) &&
        Object.values(image.dataset).some((value) => /[./]/.test(value)) && image.getClientRects().length > 0;
    const waiting = () => images().filter(isWaiting).length;
    let tells = true;
    const tell = async () => {
        const before = tells ? waiting() : 0;
        if (before === 0) return;
        EventTarget.prototype.dispatchEvent.call(document, new Event('scroll', {bubbles: true}));
        const last = Math.min(end, performance.now() + patience);
        while (waiting() === before && performance.now() < last) await after(10);
        tells = waiting() < before;
    };
    const reveal = async () => {
        scroll(0);
        await frame();
        await tell();
        for (let step = 1; step < steps && step * innerHeight < documentHeight(); ++step) {
            if (performance.now() > end) break;
            scroll(step * innerHeight);
            await frame();
            await tell();
        }
        scroll(0);
    };
    return reveal();
)js";

// What moves with an element's place in the view has no place to go by.
constexpr std::string_view concluding = R"js(
    for (const animation of Document.prototype.getAnimations.call(document)) {
        if (animation.timeline instanceof ViewTimeline) animation.cancel();
    }
    return images().filter((image) => !image.complete).length;
)js";

std::string function(std::string_view parameter, std::string_view body, const std::string& argument) {
    return "((" + std::string(parameter) + ") => {" + std::string(common) + std::string(body) + "})(" +
           argument + ")";
}

} // namespace

std::string viewHoldingScript() {
    return std::string(viewHolding);
}

std::string readinessScript(std::chrono::milliseconds limit) {
    return function("limit", std::string(presenting) + std::string(awaiting), std::to_string(limit.count()));
}

std::string substitutingScript(const std::vector<std::string>& addresses) {
    return function("addresses", substituting,
                    Json::array(std::vector<Json>(addresses.begin(), addresses.end())).serialize());
}

std::string holdingScript() {
    return function("", holding, "");
}

std::string revealingScript(std::chrono::milliseconds limit) {
    return function("limit", revealing, std::to_string(limit.count()));
}

std::string concludingScript() {
    return function("", concluding, "");
}

} // namespace qrv::engine
