#include "Platform/AppKit/DefaultPaper.h"

#include "Platform/AppKit/PaperSizes.h"
#include "Platform/Foundation/FileDescriptor.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <locale.h>
#include <optional>
#include <string>
#include <sys/stat.h>

namespace qrv {

namespace {

constexpr NSSize usLetter{612, 792};

/// Nothing if the variable is empty or not set.
const char* variable(const char* name) {
    const char* const value = std::getenv(name);
    return value && *value ? value : nullptr;
}

/// The beginning of a regular file, which is all that can matter; nothing of anything else. Never waits.
std::string beginningOf(const char* path) {
    const FileDescriptor file(::open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));

    struct stat status {};

    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
    std::string text(65536, '\0');
    const ssize_t length = ::read(file.get(), text.data(), text.size());
    text.resize(static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    return text;
}

bool isSpace(char c) {
    return static_cast<unsigned char>(c) <= ' ';
}

/// The first word that does not belong to a line of comment; empty if there is none.
std::string firstWord(const std::string& text) {
    auto begin = std::find_if_not(text.begin(), text.end(), isSpace);
    while (begin != text.end() && *begin == '#')
        begin = std::find_if_not(std::find(begin, text.end(), '\n'), text.end(), isSpace);
    return {begin, std::find_if(begin, text.end(), isSpace)};
}

std::string configurationFile() {
    const char* const file = variable("PAPERCONF");
    return file ? file : "/etc/papersize";
}

/// The C library's rules for which variable counts.
bool isLocaleOfACountry() {
    for (const char* const name : {"LC_ALL", "LC_PAPER", "LANG"})
        if (const char* const locale = variable(name))
            return std::strcmp(locale, "POSIX") != 0 && std::strcmp(locale, "C") != 0 &&
                   std::strncmp(locale, "C.", 2) != 0;
    return false;
}

int millimetres(nl_item item, ::locale_t locale) {
    // The C library hands out these numbers in the place of an address.
    return static_cast<int>(reinterpret_cast<std::intptr_t>(::nl_langinfo_l(item, locale)));
}

/// All countries that have a locale use one of two papers. Nothing where there is no such locale.
std::optional<std::string> paperOfTheLocale() {
    const ::locale_t locale = isLocaleOfACountry() ? ::newlocale(LC_PAPER_MASK, "", nullptr) : nullptr;
    if (!locale) return std::nullopt;
    const bool isA4 =
        millimetres(_NL_PAPER_WIDTH, locale) == 210 && millimetres(_NL_PAPER_HEIGHT, locale) == 297;
    ::freelocale(locale);
    return isA4 ? "a4" : "letter";
}

} // namespace

DefaultPaper defaultPaper() {
    const std::string file = configurationFile();
    const auto paper = [&](const std::string& name, DefaultPaper::Source source) {
        const std::optional<NSSize> size = paperSizeNamed(name);
        return DefaultPaper{size.value_or(usLetter), name, size.has_value(), source, file};
    };
    if (const char* const name = std::getenv("PAPERSIZE")) return paper(name, DefaultPaper::Source::variable);
    const std::string name = firstWord(beginningOf(file.c_str()));
    if (!name.empty()) return paper(name, DefaultPaper::Source::file);
    if (const auto ofLocale = paperOfTheLocale()) return paper(*ofLocale, DefaultPaper::Source::locale);
    return paper("letter", DefaultPaper::Source::none);
}

NSSize defaultPaperSize() {
    return defaultPaper().size;
}

} // namespace qrv
