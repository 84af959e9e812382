// Any bytes as an MHTML file: what is read of one is read again from what is written of it, byte for byte.

#include "Fuzz/FuzzInput.h"
#include "Platform/MHTML/MIMEMessage.h"

using namespace qrv;
using namespace qrv::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const auto read = readMIMEMessage(FuzzInput(bytes, size).rest());
    if (!read) return 0;
    require(read->root < read->parts.size());
    const MIMEPart& root = read->parts[read->root];
    const auto again = readMIMEMessage(writeMIMEMessage(*read));
    require(again || root.type != "text/html"); // other roots need to be named
    if (!again) return 0;
    require(again->parts.size() == read->parts.size());
    require(again->parts.front().bytes == root.bytes);
    std::size_t next = 0;
    for (std::size_t i = 1; i < again->parts.size(); ++i, ++next) {
        if (next == read->root) ++next;
        require(again->parts[i].bytes == read->parts[next].bytes);
    }
    return 0;
}
