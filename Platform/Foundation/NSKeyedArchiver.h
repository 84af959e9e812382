#pragma once

// Objects as bytes that another process, or another program, can read back: a binary property list in the
// keyed form, in which objects lie in one list and name each other by their place in it.
//
// What can be archived: strings, numbers, data, dates, URLs, null objects, arrays, dictionaries, errors. An
// error of a class of one's own comes back as a plain one.

#include "Platform/Foundation/NSData.h"

namespace qrv {

class NSKeyedArchiver {
public:
    NSKeyedArchiver() = delete;

    // + archivedDataWithRootObject:
    /// nil for nil, and when something in it is of another kind or containers are nested too deep (more than
    /// 512 levels). An error's empty user-info is archived as an empty dictionary.
    static NSData archivedDataWithRootObject(const id& root);
};

class NSKeyedUnarchiver {
public:
    NSKeyedUnarchiver() = delete;

    // + unarchiveObjectWithData:
    /// The root object, or nil when the bytes are no such archive or hold an object of another kind. They may
    /// come from anyone: time and memory stay in proportion to their length.
    static id unarchiveObjectWithData(const NSData& data);
};

} // namespace qrv
