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

// The script, for an isolated world, whose answer the description is read from; the page must be scrolled to
// its start. Trusts nothing that a document can name or overwrite.
std::string describingScript();

// What is missing, of another kind or no language tag is left empty.
DocumentDescription documentDescriptionFromJson(const Json& answer);

} // namespace qrv::engine
