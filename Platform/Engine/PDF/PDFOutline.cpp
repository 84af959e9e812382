#include "Platform/Engine/PDF/PDFOutline.h"

#include "Platform/Foundation/Unicode.h"

#include <algorithm>
#include <map>
#include <qpdf/QPDF.hh>
#include <set>
#include <string_view>

namespace qrv::engine {

namespace {

/// How many consecutive headings may be missing in the outline; more would take quadratic time.
constexpr std::size_t furthest = 1000;

bool isSpace(char16_t c) {
    return c == u' ' || (c >= u'\t' && c <= u'\r') || c == u'\x85' || c == u'\xA0' || c == u'\u1680' ||
           (c >= u'\u2000' && c <= u'\u200A') || c == u'\u2028' || c == u'\u2029' || c == u'\u202F' ||
           c == u'\u205F' || c == u'\u3000';
}

/// Whether a character may be at a line break, and missing where the line is not broken.
bool belongsToBreak(char16_t c) {
    return isSpace(c) || c == u'-' || c == u'\xAD' || c == u'\u2010' || c == u'\u200B';
}

std::u16string withoutBreaks(const std::string& text) {
    std::u16string kept = unicode::fromUTF8Lossy(text);
    std::erase_if(kept, belongsToBreak);
    return kept;
}

/// Whether `longer` probably is the other text with parts repeated.
bool repeatsPartsOf(std::u16string_view shorter, std::u16string_view longer) {
    if (shorter.empty() || longer.size() <= shorter.size() || longer.size() > 2 * shorter.size())
        return false;
    std::size_t matched = 0;
    for (const char16_t c : longer) {
        if (matched < shorter.size() && c == shorter[matched]) ++matched;
    }
    return matched == shorter.size();
}

} // namespace

std::string onOneLine(const std::string& text) {
    std::u16string line;
    for (const char16_t c : unicode::fromUTF8Lossy(text)) {
        if (!isSpace(c)) {
            line += c;
        } else if (!line.empty() && line.back() != u' ') {
            line += u' ';
        }
    }
    if (!line.empty() && line.back() == u' ') line.pop_back();
    return unicode::toUTF8Lossy(line);
}

HeadingFinder::HeadingFinder(const std::vector<std::string>& headings) {
    for (const std::string& heading : headings) headings_.push_back({heading, withoutBreaks(heading)});
}

std::optional<HeadingFinder::Found> HeadingFinder::find(const std::string& title) {
    const std::u16string told = withoutBreaks(title);
    const std::size_t end = std::min(headings_.size(), next_ + furthest);
    for (std::size_t at = next_; at < end; ++at) {
        const Heading& heading = headings_[at];
        const bool isRepeated = repeatsPartsOf(heading.withoutBreaks, told);
        if (!isRepeated && heading.withoutBreaks != told) continue;
        next_ = at + 1;
        return Found{onOneLine(heading.text), isRepeated, at};
    }
    return std::nullopt;
}

namespace {

class OutlineEditor {
public:
    OutlineEditor(QPDF& document, const std::vector<std::string>& headings)
        : document_(document), finder_(headings) {
        const std::vector<QPDFObjectHandle>& pages = document.getAllPages();
        for (std::size_t next = 1; next < pages.size(); ++next) {
            following_[pages[next - 1].getObjGen()] = pages[next];
        }
    }

    /// Visits parents before their children, and these before the parent's next entry.
    void run() {
        std::vector<QPDFObjectHandle> waiting{document_.getRoot().getKey("/Outlines")};
        while (!waiting.empty()) {
            QPDFObjectHandle entry = waiting.back();
            waiting.pop_back();
            if (!entry.isDictionary() || !seen_.insert(entry.getObjGen()).second) continue;
            if (entry.getKey("/Title").isString()) correct(entry);
            waiting.push_back(entry.getKey("/Next"));
            waiting.push_back(entry.getKey("/First"));
        }
    }

private:
    void correct(QPDFObjectHandle entry) {
        const auto found = finder_.find(entry.getKey("/Title").getUTF8Value());
        if (!found) return;
        entry.replaceKey("/Title", QPDFObjectHandle::newUnicodeString(found->heading));
        if (found->wasDrawnTwice) leadToStartOfPage(entry.getKey("/Dest"));
    }

    /// Moves a destination from the end of a page, where only the tops of the letters are, to the next page.
    void leadToStartOfPage(QPDFObjectHandle destination) {
        if (!destination.isArray() || destination.getArrayNItems() < 4) return;
        const auto next = following_.find(destination.getArrayItem(0).getObjGen());
        if (next == following_.end()) return;
        const double top = topOf(next->second);
        if (destination.getArrayItem(3).getNumericValue() > top / 2) return;
        destination.setArrayItem(0, next->second);
        destination.setArrayItem(3, QPDFObjectHandle::newReal(top));
    }

    static double topOf(QPDFObjectHandle page) { return page.getKey("/MediaBox").getArrayAsRectangle().ury; }

    QPDF& document_;
    HeadingFinder finder_;
    std::map<QPDFObjGen, QPDFObjectHandle> following_; // the page after each
    std::set<QPDFObjGen> seen_;
};

} // namespace

void correctOutline(QPDF& document, const std::vector<std::string>& headings) {
    OutlineEditor(document, headings).run();
}

} // namespace qrv::engine
