#pragma once

// The preferences of a web view.

namespace qrv {

class WebPreferences {
public:
    // - setPlugInsEnabled:
    /// Only stored: the engine has no plug-ins.
    void setPlugInsEnabled(bool enabled) { plugInsEnabled_ = enabled; }

    // - arePlugInsEnabled
    bool arePlugInsEnabled() const { return plugInsEnabled_; }

    // - setShouldPrintBackgrounds:
    void setShouldPrintBackgrounds(bool prints) { shouldPrintBackgrounds_ = prints; }

    // - shouldPrintBackgrounds
    bool shouldPrintBackgrounds() const { return shouldPrintBackgrounds_; }

    // - setUnrollsScrollers:
    /// Whether drawings of the view have boxes that scroll show all that they hold.
    void setUnrollsScrollers(bool unrolls) { unrollsScrollers_ = unrolls; }

    // - unrollsScrollers
    bool unrollsScrollers() const { return unrollsScrollers_; }

private:
    bool plugInsEnabled_ = true;
    bool shouldPrintBackgrounds_ = false;
    bool unrollsScrollers_ = true;
};

} // namespace qrv
