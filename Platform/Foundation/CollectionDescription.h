#pragma once

// The descriptions of arrays and dictionaries: the old text form of property lists, one element per line,
// indented by four blanks per level.

#include "Platform/Foundation/NSString.h"

namespace qrv {

/// Returns "(\n    1,\n    2\n)" or "{\n    key = value;\n}", with nested collections indented further. Texts
/// with characters other than letters, digits and "_$/:." are quoted and escaped.
NSString describeCollection(const id& collection);

} // namespace qrv
