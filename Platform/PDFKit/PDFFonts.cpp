#include "Platform/PDFKit/PDFFonts.h"

#include "Platform/PDFKit/ConfinedPDF.h"

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <qpdf/QPDFPageObjectHelper.hh>
#include <set>
#include <sstream>

namespace qrv {

namespace {

/// The name under the key; empty if there is none.
std::string nameIn(QPDFObjectHandle dictionary, const std::string& key) {
    QPDFObjectHandle name = dictionary.isDictionary() ? dictionary.getKey(key) : QPDFObjectHandle();
    return name.isInitialized() && name.isName() ? name.getName().substr(1) : std::string();
}

/// "ABCDEF+Name" is a part of the font.
std::string withoutMark(const std::string& name) {
    constexpr std::size_t length = 6;
    const bool isMarked = name.size() > length && name[length] == '+';
    return isMarked ? name.substr(length + 1) : name;
}

/// Fonts whose glyphs are drawings have a name in their descriptor only.
std::string nameOf(QPDFObjectHandle font) {
    const std::string name = nameIn(font, "/BaseFont");
    return withoutMark(
        !name.empty() || !font.isDictionary() ? name : nameIn(font.getKey("/FontDescriptor"), "/FontName"));
}

std::set<std::string> fontsOf(const QPDFObjectHandle& page) {
    std::set<std::string> names;
    QPDFObjectHandle fonts = QPDFPageObjectHelper(page).getAttribute("/Resources", false);
    fonts = fonts.isDictionary() ? fonts.getKey("/Font") : fonts;
    if (!fonts.isDictionary()) return names;
    for (const std::string& key : fonts.getKeys()) {
        const std::string name = nameOf(fonts.getKey(key));
        // Names stand on lines of their own, and pages end in an empty one.
        if (!name.empty() && name.find('\n') == std::string::npos) names.insert(name);
    }
    return names;
}

} // namespace

std::vector<std::vector<std::string>> fontsIn(QPDF& document) {
    std::vector<std::vector<std::string>> pages;
    for (const QPDFObjectHandle& page : document.getAllPages()) {
        const std::set<std::string> names = fontsOf(page);
        pages.emplace_back(names.begin(), names.end());
    }
    return pages;
}

NSData listFromFonts(const std::vector<std::vector<std::string>>& pages) {
    std::string lines;
    for (const std::vector<std::string>& names : pages) {
        for (const std::string& name : names) lines += name + "\n";
        lines += "\n";
    }
    return NSData(std::move(lines));
}

std::vector<std::vector<std::string>> fontsFromList(const NSData& list) {
    std::vector<std::vector<std::string>> pages;
    std::istringstream lines{std::string(list.bytes())};
    std::vector<std::string> names;
    for (std::string line; std::getline(lines, line);) {
        if (!line.empty()) {
            names.push_back(line);
        } else {
            pages.push_back(std::move(names));
            names.clear();
        }
    }
    return pages;
}

std::vector<std::vector<std::string>> fontsOfPages(const NSData& bytes) {
    const auto list = workOnDocument("reading the fonts of a PDF", bytes,
                                     [](QPDF& document) { return listFromFonts(fontsIn(document)); });
    return list && *list ? fontsFromList(*list) : std::vector<std::vector<std::string>>();
}

} // namespace qrv
