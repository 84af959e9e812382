#pragma once

// Fills HTML templates with texts that nobody can trust.
//
//     {{name}}              the text of that name: no markup, no controls, whatever it holds
//     {{{name}}}            the same as it is, for what the program itself brings
//     {{#name}}...{{/name}} once for each scope of that part; texts that it lacks are those around it

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace qrv::batch {

/// What the names in a template, or in a part of it, stand for. A missing text is empty.
struct TemplateScope {
    std::map<std::string, std::string, std::less<>> texts;
    std::map<std::string, std::vector<TemplateScope>, std::less<>> parts;
};

/// The template must be well-formed; it throws std::logic_error otherwise.
std::string filled(std::string_view text, const TemplateScope& scope);

/// As the text of an element or of an attribute in quotes. Controls, line breaks, formatting characters such
/// as those of directions, and bytes that are no UTF-8 become U+FFFD.
std::string htmlText(std::string_view text);

} // namespace qrv::batch
