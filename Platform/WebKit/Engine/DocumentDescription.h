#pragma once

#include <string>
#include <vector>

namespace qrv::engine {

class Json;

// What a document says of itself that the engine loses, or makes up, when it prints.
struct DocumentDescription {
    std::string language;              // a language tag; empty when the document names none
    std::vector<std::string> headings; // the texts of those that are seen, in order
};

// The script, for an isolated world, whose answer the description is read from. Trusts nothing that a
// document can name or overwrite.
std::string describingScript();

// What is missing, of another kind or no language tag is left empty.
DocumentDescription documentDescriptionFromJson(const Json& answer);

} // namespace qrv::engine
