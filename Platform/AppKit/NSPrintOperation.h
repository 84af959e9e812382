#pragma once

// A print of one view into one file. Main thread only.

#include "Platform/AppKit/NSPrintInfo.h"
#include "Platform/AppKit/NSView.h"

namespace qrv {

class NSPrintOperation {
public:
    // + printOperationWithView:printInfo:
    /// The settings are copied; the view must outlive the operation.
    static NSPrintOperation printOperationWithView_printInfo(NSView& view, const NSPrintInfo& settings) {
        return {view, settings};
    }

    // - setShowsPrintPanel:
    /// There is nobody to show a panel to: operations are always silent. The same holds for the progress
    /// panel.
    void setShowsPrintPanel(bool /*shows*/) {}

    // - setShowsProgressPanel:
    void setShowsProgressPanel(bool /*shows*/) {}

    // - runOperation
    /// Prints and returns when the file is written, in one step. False, with an existing file left as it was,
    /// when the disposition is not NSPrintSaveJob, when the saving URL is no file's, when the view cannot be
    /// printed and when the file cannot be written.
    bool runOperation();

private:
    NSPrintOperation(NSView& view, const NSPrintInfo& settings) : view_(view), settings_(settings) {}

    NSView& view_;
    const NSPrintInfo settings_;
};

} // namespace qrv
