// For a page that is a single picture or film: the engine shows it in the middle of a dark view and fits it in. Makes it
// a page like any other, in its natural size; a film is shown by its first picture. Answers when that is done, after
// `limit` milliseconds in any case.
(limit) => {
    const style =
        'html,body{height:auto!important;margin:0!important;background:none!important}' +
        'img,video{position:static!important;display:block!important;margin:0!important;' +
        'background:none!important;transition:none!important}' +
        'img,video:not([controls]){width:auto!important;height:auto!important;' +
        'max-width:none!important;max-height:none!important}';
    const present = async () => {
        if (!property('head')) return;
        const element = Document.prototype.createElement.call(document, 'style');
        element.textContent = style;
        property('head').append(element);
        const [video] = query('video');
        if (!video) return;
        video.autoplay = false;
        if (waitsForPicture(video)) await firstPicture(video);
        video.pause();
        if (video.videoWidth === 0) return;
        video.controls = false;
        if (video.currentTime === 0) return;
        video.currentTime = 0;
        await firstOf(video, 'seeked');
    };
    return Promise.race([present(), new Promise((done) => setTimeout(done, limit))]);
};
