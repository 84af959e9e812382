// Answers the addresses of the pictures that a document shows in a view of this density, whether they could be had or
// not: of its images, and in the styles of its first 5,000 boxes.
(density) => {
    const found = new Set(
        trees().flatMap((content) => query('img', content).map((image) => image.currentSrc)),
    );
    const text = '"((?:[^"\\\\]|\\\\.)*)"';
    const sets = new RegExp(`image-set\\(((?:[^()"]|${text}|\\((?:[^()"]|${text})*\\))*)\\)`, 'g');
    const urls = new RegExp(`url\\(${text}\\)(?:\\s+([\\d.]+)dppx)?`, 'g');
    // The engine takes the first that is dense enough, or the densest.
    const choose = (all, list) => {
        const options = [...list.matchAll(urls)].sort((one, other) => one[2] - other[2]);
        return (options.find((option) => option[2] >= density) ?? options.at(-1))?.[0] ?? '';
    };
    const add = (value) => {
        for (const [, address] of value.replace(sets, choose).matchAll(urls)) {
            found.add(address.replace(/\\(.)/g, '$1'));
        }
    };
    const boxes = displayedTree()
        .filter((element) => Element.prototype.checkVisibility.call(element))
        .slice(0, 5000);
    for (const element of boxes) {
        for (const pseudo of [null, '::before', '::after']) {
            const style = getComputedStyle(element, pseudo);
            for (const name of [
                'backgroundImage',
                'maskImage',
                'borderImageSource',
                'listStyleImage',
                'content',
            ]) {
                if (style[name].includes('url(')) add(style[name]);
            }
        }
    }
    return [...found].filter((address) => address && address.length < 5000 && !address.startsWith('data:'));
};
