// Answers the name of the encoding that a frame's document was read in.
() => property('characterSet');
