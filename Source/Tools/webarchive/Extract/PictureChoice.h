#pragma once

// The pictures that an element has to choose from: "a.png 1x, b.png 2x".

#include "Source/Tools/webarchive/Extract/StyleText.h"

namespace qrv::webarchive {

/// The pictures for which there is a replacement, each with its own descriptor; empty if there is none.
std::string withPictures(std::string_view choice, const Replacement& replacement);

} // namespace qrv::webarchive
