#pragma once

// Numbers in formats, as printf shows them in the "C" locale.

#include "Platform/Foundation/FormatArguments.h"
#include "Platform/Foundation/FormatConversion.h"

#include <string>

namespace qrv {

/// The conversions d, i, D, u, U, o, O, x and X, of an integer.
void appendInteger(std::u16string& out, const FormatConversion& conversion, const FormatArgument& argument);
/// The conversions f, F, e, E, g, G, a and A, of a double or long double.
void appendReal(std::u16string& out, const FormatConversion& conversion, const FormatArgument& argument);

} // namespace qrv
