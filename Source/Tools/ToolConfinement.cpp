#include "Source/Tools/ToolConfinement.h"

#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/WebKit/WebView.h"

#include <filesystem>
#include <utility>

namespace qrv {

namespace {

namespace fs = std::filesystem;

/// A file is replaced by a new one in its folder, wherever a link leads; what is no file is refused.
void allowOutput(FileRules& rules, const NSString& path) {
    const fs::path given = path.fileSystemRepresentation();
    if (given.empty()) return;
    std::error_code error;
    if (fs::exists(given, error) && !fs::is_regular_file(given, error)) return;
    for (const fs::path& file : {given, given.lexically_normal(), fs::weakly_canonical(given, error)}) {
        const fs::path folder = file.parent_path();
        rules.allow(folder.empty() ? fs::path(".") : folder, FileRules::change);
    }
}

} // namespace

FileRules toolFiles(const NSString& pdfPath) {
    FileRules rules = FileRules::leavingRead();
    allowOutput(rules, pdfPath);
    allowOutput(rules,
                as<NSString>(NSProcessInfo::processInfo().environment().objectForKey(NSString(u"OutPath"))));
    WebView::allowViews(rules);
    return rules;
}

} // namespace qrv
