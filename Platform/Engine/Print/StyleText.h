#pragma once

// Writes style sheets.

#include <string>
#include <string_view>

namespace qrv::engine {

// Numbers and lengths as CSS writes them, whatever the locale. No number is written as 0, one beyond 1e15 as
// that.

std::string number(double value);
std::string pixels(double length);
std::string points(double length);

/// A rule whose declarations are all important.
class StyleRule {
public:
    explicit StyleRule(std::string_view selector);

    void add(std::string_view property, std::string_view value);
    void addNested(const StyleRule& rule);
    std::string text() const;

private:
    std::string selector_;
    std::string declarations_;
};

/// Writes `@page NAME` with this size, this margin on all sides, and nothing of what a document may say of
/// its pages.
StyleRule pageRule(std::string_view name, std::string_view width, std::string_view height,
                   std::string_view margin);

/// The rules of a print, which applyPrintStyle.js makes stronger than the document's own.
class StyleSheet {
public:
    StyleSheet();

    void add(const StyleRule& rule);
    std::string text() const;

private:
    std::string rules_;
};

} // namespace qrv::engine
