#pragma once

// MIME messages of several parts, as MHTML files are. The only access to the library that reads and writes
// them; what it reads is not to be trusted, so it is done in a confined child (MHTMLReader.h).

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace qrv {

struct MIMEPart {
    std::string location;   ///< Content-Location, without white space; empty if there is none
    std::string identifier; ///< Content-ID, without its brackets; empty if there is none
    std::string type;       ///< "text/html"
    std::string charset;    ///< empty if there is none
    std::string bytes;      ///< decoded
};

struct MIMEMessage {
    std::vector<MIMEPart> parts; ///< without those that hold others, in their order
    std::size_t root = 0;        ///< the part that the others belong to
};

/// Has the library ready, so that no child has to. To be called before a child reads a message.
void prepareForMIMEMessages();

/// Reads a message: its root is the part that it names as the one to start with, or else its first page in
/// HTML. Nothing if there is none. Of more than 100,000 parts the rest is left out.
std::optional<MIMEMessage> readMIMEMessage(std::string_view bytes);

/// Writes the parts as multipart/related, the root first, each in base64, which keeps every byte. The same
/// parts give the same bytes.
std::string writeMIMEMessage(const MIMEMessage& message);

} // namespace qrv
