#pragma once

// Rewrites absolute references in a page that is loaded under a synthetic origin: the engine would not even
// request local files, nor frames and fonts of unknown schemes.

#include "Platform/Engine/Address/MIMEType.h"

#include <string>
#include <string_view>
#include <vector>

namespace qrv::engine {

/// Where a text contains references: in attributes, style elements and scripts; anywhere; or nowhere.
enum class ReferenceSyntax { markup, anywhere, none };

ReferenceSyntax referenceSyntax(const MIMEType& type);

/// Replaces the prefix of each reference that begins with one of the stems ("file:///"). Text that the page
/// displays is not changed. For encodings that are supersets of ASCII; linear time.
std::string withReplacedReferences(std::string_view text, ReferenceSyntax syntax,
                                   const std::vector<std::string>& stems, std::string_view replacement);

} // namespace qrv::engine
