#include "Source/Tools/Common/TerminalText.h"

#include "Platform/Foundation/Unicode.h"

namespace qrv {

std::string shown(std::string_view text) {
    return unicode::toUTF8Lossy(unicode::withoutControls(unicode::fromUTF8Lossy(text)));
}

std::string shownWithin(std::string_view text, std::size_t columns) {
    std::string whole = shown(text);
    if (whole.size() <= columns || columnsOf(whole) <= columns) return whole;
    const std::u16string units = unicode::fromUTF8Lossy(whole);
    const std::u16string_view view(units);
    unicode::ComposedSequences sequences(view);
    std::size_t end = 0;
    while (const auto next = sequences.next()) {
        if (unicode::columns(view.substr(0, next->end)) >= columns) break;
        end = next->end;
    }
    return unicode::toUTF8Lossy(view.substr(0, end)) + "…";
}

std::size_t columnsOf(std::string_view shown) {
    return unicode::columns(unicode::fromUTF8Lossy(shown));
}

} // namespace qrv
