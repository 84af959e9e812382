#pragma once

// Property lists: strings, numbers, booleans, dates, data, arrays and dictionaries with string keys, as
// binary or XML bytes. The bytes may come from anyone: nothing in them makes reading take more than time and
// memory in proportion to their length.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"

namespace qrv {

enum NSPropertyListFormat : unsigned long {
    NSPropertyListXMLFormat_v1_0 = 100,
    NSPropertyListBinaryFormat_v1_0 = 200,
};

/// Containers may be nested so deep, in reading and in writing.
inline constexpr int maximumPropertyListDepth = 512;

/// Code of NSCocoaErrorDomain: the bytes are no property list.
inline constexpr long long NSPropertyListReadCorruptError = 3840;

class NSPropertyListSerialization {
public:
    // + propertyListWithData:options:format:error:
    /// The root object; or nil and an error whose "NSDebugDescription" says what is wrong and at which byte.
    /// Immutable objects are all there is, so there are no options to give. Data objects share the bytes of
    /// `data`. Binary lists may hold null objects and the references of keyed archives besides; objects that
    /// are referred to more than once are shared. XML may be in UTF-8, UTF-16, ISO Latin 1 or ASCII; a
    /// document type may be named but is never fetched, and one that declares entities is refused.
    static id propertyListWithData_options_format_error(const NSData& data, unsigned long options,
                                                        NSPropertyListFormat* format, NSError* error);

    /// The same where neither options nor format matter.
    static id propertyListWithData(const NSData& data, NSError* error = nullptr);

    // + dataFromPropertyList:format:errorDescription:
    /// The bytes; or nil and a text that says why: an object of another kind, a key that is no string,
    /// containers too deep, and for XML also a character, date or size (1 GiB) that it cannot hold. XML
    /// keeps the order of the dictionaries' keys and drops fractions of seconds.
    static NSData dataFromPropertyList_format_errorDescription(const id& plist, NSPropertyListFormat format,
                                                               NSString* errorDescription);
};

} // namespace qrv
