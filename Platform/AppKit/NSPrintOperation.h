#pragma once

// Prints one view into one file. Main thread only.

#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/AppKit/NSView.h"

namespace qrv {

class NSPrintOperation {
public:
    // + printOperationWithView:printInfo:
    /// Copies the settings; the view must outlive the operation.
    static NSPrintOperation printOperationWithView_printInfo(NSView& view, const NSPrintInfo& settings) {
        return {view, settings};
    }

    // - setShowsPrintPanel:
    /// Has no effect: no panel is ever shown. The same holds for the progress panel.
    void setShowsPrintPanel(bool /*shows*/) {}

    // - setShowsProgressPanel:
    void setShowsProgressPanel(bool /*shows*/) {}

    // - runOperation
    /// Prints, and writes the file in one step. Returns false and leaves an existing file untouched if the
    /// disposition is not NSPrintSaveJob, if the saving URL is no file URL, if the view cannot be printed or
    /// if the file cannot be written.
    bool runOperation();

private:
    NSPrintOperation(NSView& view, const NSPrintInfo& settings) : view_(view), settings_(settings) {}

    NSView& view_;
    const NSPrintInfo settings_;
};

} // namespace qrv
