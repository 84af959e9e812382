#include "Source/Tools/webarchive/Output/TerminalText.h"

#include "Platform/Foundation/Unicode.h"

namespace qrv::webarchive {

std::string shown(std::string_view text) {
    return unicode::toUTF8Lossy(unicode::withoutControls(unicode::fromUTF8Lossy(text)));
}

std::size_t columnsOf(std::string_view shown) {
    return unicode::columns(unicode::fromUTF8Lossy(shown));
}

} // namespace qrv::webarchive
