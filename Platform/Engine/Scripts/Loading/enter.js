// Loads a page in the place of the engine's first one: the history then has one entry, and going back leads nowhere.
// Answers whether the engine finds the address to be one.
(address) => {
    try {
        location.replace(address);
        return true;
    } catch {
        return false;
    }
};
