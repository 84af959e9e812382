#include "Platform/AppKit/NSPrintOperation.h"

namespace qrv {

bool NSPrintOperation::runOperation() {
    const NSURL destination = settings_.jobSavingURL();
    if (!settings_.jobDisposition().isEqualToString(NSPrintSaveJob) || !destination.isFileURL()) return false;
    const NSString path = destination.path();
    if (path.isNil()) return false;
    const NSData pages = view_.dataForPrinting(settings_);
    return pages && pages.writeToFile_atomically(path, true);
}

} // namespace qrv
