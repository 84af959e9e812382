// Has the images that could not be had choose anew, among these addresses only. A source that is left counts whatever
// the view: the page was saved in another.
(addresses) => {
    const held = new Set(addresses);
    for (const { image, choices, chosen, candidates } of failedImages()) {
        if (held.has(chosen) || !candidates.some((candidate) => held.has(candidate))) continue;
        for (const choice of choices) {
            const kept = listed(choice).filter(({ address }) => held.has(address));
            if (kept.length === 0) {
                choice.removeAttribute('srcset');
            } else {
                choice.removeAttribute('media');
                choice.srcset = kept.map(({ address, descriptor }) => `${address} ${descriptor}`).join(', ');
            }
        }
        if (!held.has(image.src)) image.removeAttribute('src');
    }
};
