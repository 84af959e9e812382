#include "Source/Tools/batch/Report/Template.h"

#include "Platform/Foundation/PropertyList/XMLCharacters.h"
#include "Source/Tools/Common/TerminalText.h"

#include <stdexcept>

namespace qrv::batch {

namespace {

/// A scope and those around it.
struct Scopes {
    const TemplateScope& own;
    const Scopes* outer;

    std::string_view text(std::string_view name) const {
        const auto found = own.texts.find(name);
        if (found != own.texts.end()) return found->second;
        return outer ? outer->text(name) : std::string_view();
    }
};

/// Takes what stands before the mark from the text, and the mark with it.
std::string_view takeUntil(std::string_view& text, std::string_view mark) {
    const std::size_t at = text.find(mark);
    if (at == std::string_view::npos) throw std::logic_error("no " + std::string(mark) + " in a template");
    const std::string_view taken = text.substr(0, at);
    text.remove_prefix(at + mark.size());
    return taken;
}

// NOLINTNEXTLINE(misc-no-recursion): as deep as the parts of a template
void fill(std::string& result, std::string_view text, const Scopes& scopes) {
    while (text.find("{{") != std::string_view::npos) {
        result += takeUntil(text, "{{");
        if (text.starts_with('{')) {
            text.remove_prefix(1);
            result += scopes.text(takeUntil(text, "}}}"));
        } else if (text.starts_with('#')) {
            text.remove_prefix(1);
            const std::string_view name = takeUntil(text, "}}");
            const std::string_view part = takeUntil(text, "{{/" + std::string(name) + "}}");
            const auto found = scopes.own.parts.find(name);
            if (found == scopes.own.parts.end()) continue;
            for (const TemplateScope& inner : found->second) fill(result, part, {inner, &scopes});
        } else {
            result += htmlText(scopes.text(takeUntil(text, "}}")));
        }
    }
    result += text;
}

} // namespace

std::string filled(std::string_view text, const TemplateScope& scope) {
    std::string result;
    fill(result, text, {scope, nullptr});
    return result;
}

std::string htmlText(std::string_view text) {
    return escapedForXML(shown(text), true);
}

} // namespace qrv::batch
