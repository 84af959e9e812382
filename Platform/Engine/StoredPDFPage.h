#pragma once

// A page whose main resource is a PDF file. It needs no engine: the file itself is what the page draws, on
// screen and in print, with its own pages, boxes and links.

#include "Platform/Engine/Page.h"

namespace qrv::engine {

/// Whether the archive's main resource says that it is a PDF file.
bool isPDFArchive(const WebArchive& archive);

/// A page for an archive of which isPDFArchive is true. It is committed and finished like any other, without
/// a title, whatever its bytes are; where readers could not open them it draws nothing.
std::unique_ptr<Page> makeStoredPDFPage(PageClient& client);

} // namespace qrv::engine
