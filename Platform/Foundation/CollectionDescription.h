#pragma once

// How arrays and dictionaries show themselves: the old property-list text form, one element a line, indented
// by four blanks a level.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// "(\n    1,\n    2\n)" or "{\n    key = value;\n}", nested collections indented further. Texts that hold
/// other than letters, digits and "_$/:." are quoted and escaped.
NSString describeCollection(const id& collection);

} // namespace qrv
