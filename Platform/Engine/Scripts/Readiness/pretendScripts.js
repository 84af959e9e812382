// Keeps a document from telling that its scripts are stopped: what is for readers without scripts stays hidden, and media
// queries get the answer that they had. To be called in each frame before its scripts are stopped. Style sheets of other
// origins cannot be read, and closed shadow trees not be entered.
() => {
    if (!matchMedia('(scripting: enabled)').matches) return;
    const pretend = (media) => {
        const { mediaText } = media;
        const answered = mediaText.replace(
            /\(\s*scripting\s*(?::\s*([\w-]+)\s*)?\)/gi,
            (all, value = 'enabled') => (value === 'enabled' ? '(min-width: 0)' : '(max-width: -1px)'),
        );
        if (answered !== mediaText) media.mediaText = answered;
    };
    for (const content of trees()) {
        visitRules(content, (sheetOrRule) => sheetOrRule.media && pretend(sheetOrRule.media));
        for (const element of query('noscript', content)) {
            set(element, { display: 'none' });
        }
    }
};
