// Runs in the isolated world before the page's scripts. Refuses navigations for which the engine requests nothing, so
// that nobody could answer their request with a refusal: what leaves the archive for a blank, blob: or data: page, be
// it the main frame or a frame by a link, a form or a reload; and addresses that the engine finds too long, in whose
// place it shows a blank page.
(() => {
    const longest = 2 * 1024 * 1024;
    navigation.addEventListener('navigate', (event) => {
        const { url, sameDocument } = event.destination;
        const isRequested = /^https?:/.test(url);
        const isRefused = window === top || event.sourceElement || event.navigationType === 'reload';
        if (!sameDocument && (url.length > longest || (!isRequested && isRefused))) event.preventDefault();
    });
})();
