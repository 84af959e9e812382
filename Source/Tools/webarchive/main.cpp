#include "Platform/Foundation/MappedFile.h"
#include "Source/Tools/Common/Failure.h"
#include "Source/Tools/Common/TerminalText.h"
#include "Source/Tools/webarchive/Commands.h"

#include <csignal>
#include <exception>
#include <iostream>
#include <new>

using namespace qrv;
using namespace qrv::webarchive;

namespace {

int fail(const std::string& why) {
    std::cerr << "webarchive: " << shown(why) << '\n';
    return failure;
}

} // namespace

int main(int argc, char** argv) {
    qrv::allowMappedFiles();
    std::signal(SIGXFSZ, SIG_IGN); // so that writing beyond the limit for files fails, and is told
    try {
        CommandLine commands("webarchive", "Looks into saved web archives", WEB2PDF_VERSION);
        addCommands(commands);
        const int status = commands.run(argc, argv);
        std::cout.flush();
        return std::cout ? status : fail("standard output cannot be written");
    } catch (const Failure& error) {
        return fail(error.what());
    } catch (const std::bad_alloc&) {
        return fail("no memory is left");
    } catch (const std::exception& error) { // of a library, which nothing above expects
        return fail(error.what());
    }
}
