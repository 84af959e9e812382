#pragma once

// Property lists (strings, numbers, booleans, dates, data, arrays, dictionaries with string keys) as binary
// or XML bytes. The bytes may be hostile: reading takes time and memory proportional to their length.

#include "Platform/Foundation/NSData.h"
#include "Platform/Foundation/NSError.h"

namespace qrv {

enum NSPropertyListFormat : unsigned long {
    NSPropertyListXMLFormat_v1_0 = 100,
    NSPropertyListBinaryFormat_v1_0 = 200,
};

/// How deep containers may be nested, in reading and in writing.
inline constexpr int maximumPropertyListDepth = 512;

/// Code of NSCocoaErrorDomain: the bytes are no property list.
inline constexpr long long NSPropertyListReadCorruptError = 3840;

class QRV_EXPORT NSPropertyListSerialization {
public:
    // + propertyListWithData:options:format:error:
    /// Returns the root object, or nil and an error whose "NSDebugDescription" says what is wrong at which
    /// byte. There are no options, since all objects are immutable. Data objects share the bytes of `data`.
    /// Binary lists may also hold null objects and keyed-archive references; objects that are referred to
    /// more than once are shared. XML may be in UTF-8, UTF-16, ISO Latin 1 or ASCII. A document type may be
    /// named but is never fetched; one that declares entities is refused.
    static id propertyListWithData_options_format_error(const NSData& data, unsigned long options,
                                                        NSPropertyListFormat* format, NSError* error);

    /// The same without options and format.
    static id propertyListWithData(const NSData& data, NSError* error = nullptr);

    // + dataFromPropertyList:format:errorDescription:
    /// Returns the bytes, or nil and a text that says why: an object of another kind, a key that is no
    /// string, containers nested too deep, and for XML also a character, a date or a size (above 1 GiB) that
    /// it cannot represent. XML keeps the order of dictionary keys and drops fractions of seconds.
    static NSData dataFromPropertyList_format_errorDescription(const id& plist, NSPropertyListFormat format,
                                                               NSString* errorDescription);
};

} // namespace qrv
