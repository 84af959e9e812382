#include "Source/Tools/batch/Progress/Progress.h"

#include "Source/Tools/batch/Progress/ProgressBar.h"
#include "Source/Tools/batch/Progress/ProgressLog.h"

#include <clocale>
#include <cstdlib>
#include <iostream>
#include <langinfo.h>
#include <string_view>
#include <unistd.h>

namespace qrv::batch {

namespace {

class Silence : public Progress {
public:
    void started(const std::string&) override {}

    void finished(const Record&, Outcome, const Tally&) override {}

    void passed(const Tally&, std::chrono::duration<double>) override {}

    void ended(const std::string&) override {}
};

std::string_view variable(const char* name) {
    const char* const value = std::getenv(name);
    return value ? value : "";
}

bool localeHasUnicode() {
    const locale_t locale = ::newlocale(LC_CTYPE_MASK, "", nullptr);
    if (!locale) return false;
    const bool hasUnicode = std::string_view(::nl_langinfo_l(CODESET, locale)) == "UTF-8";
    ::freelocale(locale);
    return hasUnicode;
}

} // namespace

Terminal Terminal::ofStandardOutput() {
    const bool isTerminal =
        ::isatty(STDOUT_FILENO) == 1 && variable("TERM") != "dumb" && !variable("TERM").empty();
    return {isTerminal, isTerminal && variable("NO_COLOR").empty(), localeHasUnicode()};
}

std::unique_ptr<Progress> makeProgress(const Terminal& terminal, bool isQuiet) {
    if (isQuiet) return std::make_unique<Silence>();
    if (terminal.isTerminal) return std::make_unique<ProgressBar>(std::cout, terminal);
    return std::make_unique<ProgressLog>(std::cout);
}

} // namespace qrv::batch
