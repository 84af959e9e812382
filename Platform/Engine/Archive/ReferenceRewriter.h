#pragma once

// Absolute references in the text of a page that is loaded under a stand-in address: the engine does not even
// ask for local files, nor for frames and fonts of schemes that it does not know.

#include "Platform/Engine/Address/MIMEType.h"

#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

/// How references stand in a text: in attributes, style elements and scripts; anywhere; or not at all.
enum class ReferenceSyntax { markup, anywhere, none };

ReferenceSyntax referenceSyntax(const MIMEType& type);

/// The text with each reference that begins with one of the stems ("file:///") beginning with the replacement
/// instead. What a page shows as text stays as it is. For encodings in which ASCII stands for itself; in
/// linear time.
std::string withReplacedReferences(std::string_view text, ReferenceSyntax syntax,
                                   const std::vector<std::string>& stems, std::string_view replacement);

} // namespace qrv::engine
