#pragma once

// Writes web archives as MHTML files, which browsers open.

#include "Platform/WebArchive/WebArchive.h"

namespace qrv {

/// The page, its resources and those of its frames as the parts of one MIME message, in the order of the
/// archive, with the bytes that they have. Frames have identifiers. Addresses of files become those of a host
/// that stands for them, since browsers load no files for such a page; the reader takes that back. A resource
/// that is there already, in another frame, is left out; names of frames are lost. nil for nil, and for an
/// archive whose resources share so many bytes that the file would be far larger.
NSData MHTMLFromArchive(const WebArchive& archive);

} // namespace qrv
