// Writes into the page's title what the page finds out: "web2pdf-batch/1", the engine's version, how many addresses
// were tried, those that something came from, and for each sheet how many of its characters no font has. The parts
// are separated by spaces, and the last two by commas inside.
(() => {
    const addresses = document.currentScript.dataset.addresses.split(' ');

    // Takes another way than requests. Whether it arrives, those know who are there.
    new WebSocket(addresses[0].replace('http', 'ws'));

    // The page does not go on before there is an answer, so that the title is there when it has loaded.
    const answers = (address) => {
        const request = new XMLHttpRequest();
        try {
            request.open('GET', address, false);
            request.send();
        } catch {
            return false;
        }
        return true;
    };

    const canvas = document.createElement('canvas');
    [canvas.width, canvas.height] = [96, 64];
    document.body.append(canvas); // where it takes its language from
    const context = canvas.getContext('2d', { willReadFrequently: true });
    const drawing = (character, language) => {
        canvas.lang = language;
        context.clearRect(0, 0, canvas.width, canvas.height);
        context.font = '32px serif';
        context.fillText(character, 16, 40);
        return context.getImageData(0, 0, canvas.width, canvas.height).data.join();
    };

    // Nobody has a font for these; what is drawn in their place is drawn for all that is missing.
    const substitutes = ['\u{2FE0}', '\u{10FFFD}'].map((character) => drawing(character, 'en'));
    const isMissing = (character, language) => {
        const drawn = drawing(character, language);
        return substitutes.includes(drawn) || !/[1-9]/.test(drawn);
    };
    const missing = [...document.querySelectorAll('p')].map(
        (sheet) =>
            [...sheet.textContent].filter(
                (character) => /[\p{L}\p{N}\p{S}]/u.test(character) && isMissing(character, sheet.lang),
            ).length,
    );
    canvas.remove();

    const version = /Chrome\/([\d.]+)/.exec(navigator.userAgent)?.[1] ?? '-';
    const reached = addresses.filter(answers);
    document.title = [
        'web2pdf-batch/1',
        version,
        addresses.length,
        reached.join() || '-',
        missing.join(),
    ].join(' ');
})();
