// Answers the document's title, empty when it has none, and the name of the element that the document's frame belongs
// to, which only a frame of the same origin knows.
() => {
    const owner = window.frameElement;
    return { title: property('title'), owner: owner ? read(Node, 'nodeName', owner) : '' };
};
