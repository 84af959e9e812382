#include "Platform/Foundation/PropertyList/XMLCharacters.h"

namespace qrv {

namespace {

/// Empty for a character that stands for itself.
std::string_view escapeOf(char character, bool escapesQuotes) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '\r':
        return "&#13;"; // a bare one would be read as a line feed
    case '"':
        return escapesQuotes ? "&quot;" : "";
    case '\'':
        return escapesQuotes ? "&#39;" : "";
    default:
        return "";
    }
}

} // namespace

std::string escapedForXML(std::string_view text, bool escapesQuotes) {
    std::string result;
    result.reserve(text.size());
    for (const char character : text) {
        const std::string_view escape = escapeOf(character, escapesQuotes);
        if (escape.empty()) {
            result += character;
        } else {
            result += escape;
        }
    }
    return result;
}

} // namespace qrv
