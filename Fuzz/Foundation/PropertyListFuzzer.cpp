// Any bytes as a property list. What can be read has to be writable, and what is written has to read back as
// the same.

#include "Fuzz/FuzzInput.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

using namespace qrv;
using namespace qrv::fuzz;

namespace {

NSData write(const id& plist, NSPropertyListFormat format) {
    return NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(plist, format, nullptr);
}

/// A second writing has to give the same bytes. (Comparing the objects would go through shared ones as often
/// as they are named.)
void checkReadsBack(const id& plist, NSPropertyListFormat format) {
    const NSData data = write(plist, format);
    if (!data) return; // null objects and characters that XML cannot hold
    const id back = NSPropertyListSerialization::propertyListWithData(data);
    require(static_cast<bool>(back));
    require(write(back, format) == data);
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const NSData data(std::string(FuzzInput(bytes, size).rest()));
    NSPropertyListFormat format{};
    NSError error;
    const id plist =
        NSPropertyListSerialization::propertyListWithData_options_format_error(data, 0, &format, &error);
    require(plist.isNil() != error.isNil());
    if (!plist) return 0;
    checkReadsBack(plist, NSPropertyListBinaryFormat_v1_0);
    // Binary lists may name one object any number of times, which the XML form would write as often.
    if (format == NSPropertyListXMLFormat_v1_0) checkReadsBack(plist, NSPropertyListXMLFormat_v1_0);
    return 0;
}
