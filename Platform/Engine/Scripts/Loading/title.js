// Answers the document's title; empty when it has none.
() => property('title');
