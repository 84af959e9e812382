#include "Source/Tools/ToolConfinement.h"

#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/WebKit/WebView.h"

namespace qrv {

FileRules toolFiles(const NSString& pdfPath) {
    FileRules rules = FileRules::leavingRead();
    const auto outPath =
        as<NSString>(NSProcessInfo::processInfo().environment().objectForKey(NSString(u"OutPath")));
    rules.allowReplacing(pdfPath.fileSystemRepresentation());
    rules.allowReplacing(outPath.fileSystemRepresentation());
    WebView::allowViews(rules);
    return rules;
}

} // namespace qrv
