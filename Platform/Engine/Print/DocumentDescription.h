#pragma once

// What a document says of itself that the engine loses, or makes up, when it prints.

#include "Platform/Engine/PDF/PDFFrames.h"

#include <map>
#include <string>
#include <vector>

namespace qrv::engine {

class Json;

struct DocumentDescription {
    std::string language;              ///< a language tag; empty when the document names none
    std::vector<std::string> headings; ///< the texts of all of them, in order
    /// Where the targets of links within the document are, by the fragment of the link's address: CSS px from
    /// the start of the page. Only targets that begin in the view when the page is scrolled to its start.
    std::map<std::string, double> targetsInView;
    bool hasFrames = false;
    double breaks = 0;            ///< boxes at which a sheet ends in any case; 0 where they are few
    std::vector<PDFFrame> frames; ///< those and the document itself; read by their own script
};

/// Reads the describing script's answer. What is missing, of another kind or no language tag is left empty.
DocumentDescription documentDescriptionFromJson(const Json& answer);

/// Reads where targets of links are. What is missing or of another kind is left out.
std::map<std::string, double> targetsFromJson(const Json& answer);

/// Reads what the frame's describing script answers. What is missing or of another kind is left as it is at
/// first.
PDFFrame frameDescriptionFromJson(const Json& answer);

} // namespace qrv::engine
