// Has a document's image sets choose anew. The engine keeps their choice when the view's density changes, until their
// declarations change. Style sheets of other origins cannot be reached.
() => {
    const renew = (style) => {
        for (const name of [...style]) {
            const value = style.getPropertyValue(name);
            if (!value.includes('image-set(')) continue;
            const priority = style.getPropertyPriority(name);
            style.setProperty(name, 'none');
            style.setProperty(name, value, priority);
        }
    };
    for (const content of trees()) {
        visitRules(content, (rule) => rule.style && renew(rule.style));
        for (const element of query('[style*="image-set("]', content)) renew(element.style);
    }
};
