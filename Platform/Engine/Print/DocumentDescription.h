#pragma once

#include <map>
#include <string>
#include <vector>

namespace qrv::engine {

class Json;

// What a document says of itself that the engine loses, or makes up, when it prints.
struct DocumentDescription {
    std::string language;              // a language tag; empty when the document names none
    std::vector<std::string> headings; // the texts of those that are seen, in order
    // What links within the document lead to, by the fragment of the address, as far as it begins in the view
    // when the page is scrolled to its start: CSS px from there.
    std::map<std::string, double> targetsInView;
};

/// Reads the describing script's answer. What is missing, of another kind or no language tag is left empty.
DocumentDescription documentDescriptionFromJson(const Json& answer);

} // namespace qrv::engine
