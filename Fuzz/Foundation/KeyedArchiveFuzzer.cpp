// Any bytes as a keyed archive, and any XML property list as the form of one: in it, the text "#7" stands for
// a reference to the seventh object. What can be read has to be writable, and has to read back.

#include "Fuzz/FuzzInput.h"
#include "Platform/Foundation/NSArray.h"
#include "Platform/Foundation/NSDictionary.h"
#include "Platform/Foundation/NSKeyedArchiveUID.h"
#include "Platform/Foundation/NSKeyedArchiver.h"
#include "Platform/Foundation/NSPropertyListSerialization.h"

using namespace qrv;
using namespace qrv::fuzz;

namespace {

id withReferences(const id& form) {
    if (const auto text = as<NSString>(form); text.hasPrefix(u"#"))
        return NSKeyedArchiveUID::uidWithValue(
            static_cast<unsigned long long>(text.substringFromIndex(1).integerValue()));
    if (const auto array = as<NSArray>(form)) {
        std::vector<id> elements;
        for (const id& element : array) elements.push_back(withReferences(element));
        return NSArray(std::move(elements));
    }
    if (const auto dictionary = as<NSDictionary>(form)) {
        NSMutableDictionary entries;
        for (const id& key : dictionary.allKeys())
            entries.setObject_forKey(withReferences(dictionary.objectForKey(key)), key);
        return entries.copy();
    }
    return form;
}

NSData archiveOf(const id& object) {
    const NSData archive = NSKeyedArchiver::archivedDataWithRootObject(object);
    require(static_cast<bool>(archive));
    return archive;
}

id readBack(const id& object) {
    const id back = NSKeyedUnarchiver::unarchiveObjectWithData(archiveOf(object));
    require(static_cast<bool>(back));
    return back;
}

void checkArchive(const NSData& data) {
    const id object = NSKeyedUnarchiver::unarchiveObjectWithData(data);
    if (!object) return;
    // Equal strings are one object afterwards, so only from then on are the bytes the same.
    const id back = readBack(object);
    require(archiveOf(readBack(back)) == archiveOf(back));
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const NSData data(std::string(FuzzInput(bytes, size).rest()));
    checkArchive(data);
    NSPropertyListFormat format{};
    const id form =
        NSPropertyListSerialization::propertyListWithData_options_format_error(data, 0, &format, nullptr);
    // Objects of a binary list may be shared, and would be copied as often as they are named.
    if (!form || format != NSPropertyListXMLFormat_v1_0) return 0;
    const NSData archive = NSPropertyListSerialization::dataFromPropertyList_format_errorDescription(
        withReferences(form), NSPropertyListBinaryFormat_v1_0, nullptr);
    if (archive) checkArchive(archive);
    return 0;
}
