#pragma once

// Archives objects as bytes that another process or program can read: a binary property list in keyed form,
// in which the objects form one list and refer to each other by index.
//
// Strings, numbers, data, dates, URLs, null objects, arrays, dictionaries and errors can be archived. An
// error of a derived class is read back as a plain NSError.

#include "Platform/Foundation/NSData.h"

namespace qrv {

class QRV_EXPORT NSKeyedArchiver {
public:
    NSKeyedArchiver() = delete;

    // + archivedDataWithRootObject:
    /// Returns nil for nil, for objects of any other kind and for containers nested more than 512 deep. An
    /// error's empty user-info is archived as an empty dictionary.
    static NSData archivedDataWithRootObject(const id& root);
};

class QRV_EXPORT NSKeyedUnarchiver {
public:
    NSKeyedUnarchiver() = delete;

    // + unarchiveObjectWithData:
    /// Returns the root object, or nil if the bytes are no such archive or hold an object of another kind.
    /// The bytes may be hostile: time and memory stay proportional to their length.
    static id unarchiveObjectWithData(const NSData& data);
};

} // namespace qrv
