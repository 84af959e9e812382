#include "Source/Tools/Common/StandardStreams.h"
#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/batch/Program.h"

#include <csignal>
#include <exception>
#include <iostream>
#include <new>

using namespace qrv;
using namespace qrv::batch;

namespace {

int fail(const std::string& why, int status) {
    std::cerr << "web2pdf-batch: " << shown(why) << (status == badUsage ? "; --help says more\n" : "\n");
    return status;
}

} // namespace

int main(int argc, char** argv) {
    openStandardStreams();
    std::signal(SIGXFSZ, SIG_IGN);    // so that writing beyond the limit for files fails, and is told
    std::signal(SIGPIPE, SIG_IGN);    // nobody reads the log any more: conversions go on
    std::signal(SIGCHLD, SIG_DFL);    // a caller that ignores how its children end hands that on
    std::ios::sync_with_stdio(false); // so that a list that cannot be read is told from its end
    try {
        Options options;
        CommandLine arguments("web2pdf-batch", "Converts many web archives to PDF", WEB2PDF_VERSION);
        declareOptions(arguments.program([&options] { return runProgram(options); }), options);
        return arguments.run(argc, argv);
    } catch (const UsageError& error) {
        return fail(error.what(), badUsage);
    } catch (const Failure& error) {
        return fail(error.what(), failure);
    } catch (const std::bad_alloc&) {
        return fail("no memory is left", failure);
    } catch (const std::exception& error) { // of a library, which nothing above expects
        return fail(error.what(), failure);
    }
}
