#pragma once

// What a view may do.

namespace qrv {

class WebPreferences {
public:
    // - setPlugInsEnabled:
    /// The engine has no plug-ins, so there is nothing that this could switch on; off is what it always is.
    void setPlugInsEnabled(bool enabled) { plugInsEnabled_ = enabled; }

    // - arePlugInsEnabled
    bool arePlugInsEnabled() const { return plugInsEnabled_; }

    // - setShouldPrintBackgrounds:
    void setShouldPrintBackgrounds(bool prints) { shouldPrintBackgrounds_ = prints; }

    // - shouldPrintBackgrounds
    bool shouldPrintBackgrounds() const { return shouldPrintBackgrounds_; }

private:
    bool plugInsEnabled_ = true;
    bool shouldPrintBackgrounds_ = false;
};

} // namespace qrv
