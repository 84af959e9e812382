#include "Source/Tools/Common/StandardStreams.h"
#include "Source/Tools/ToolConfinement.h"
#include "Source/Tools/web2pdf.h"

#include "Platform/Foundation/MappedFile.h"
#include "Platform/Foundation/NSProcessInfo.h"
#include "Platform/Logging/NSLog.h"

#include <cerrno>
#include <csignal>
#include <cstring>

namespace {

/// From here on the tool has to do with the archive. A kernel that refuses is no reason not to convert.
void confine(const qrv::NSString& pdfPath) {
    qrv::FileRules rules = qrv::toolFiles(pdfPath);
#ifdef WEB2PDF_WRITES_REPORTS // of a sanitizer or of coverage, wherever it was told to
    rules.allow("/", qrv::FileRules::change);
#endif
    if (!rules.enforce())
        qrv::NSLog(u"no file rules for the tool; it can write what its user can (%s)", std::strerror(errno));
}

} // namespace

int main(int argc, char** argv) {
    qrv::openStandardStreams();
    // The run must reach its end even if nobody reads its output any more, or it outgrows the limit for
    // files: such writes fail.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // A caller that ignores how its children end hands that on, and then nobody learns how ours end.
    std::signal(SIGCHLD, SIG_DFL);
    qrv::allowMappedFiles();
    qrv::NSProcessInfo::processInfo().setArguments(argc, argv);
    qrv::runWeb2PDF(&confine);
}
