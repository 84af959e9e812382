#pragma once

// Numbers in formats, as printf shows them in the "C" locale.

#include "Platform/Foundation/FormatArguments.h"
#include "Platform/Foundation/FormatConversion.h"

#include <memory_resource>
#include <string>

namespace qrv {

/// What formats are expanded into.
using FormatOutput = std::pmr::u16string;

/// The conversions d, i, D, u, U, o, O, x and X, of an integer.
void appendInteger(FormatOutput& out, const FormatConversion& conversion, const FormatArgument& argument);
/// The conversions f, F, e, E, g, G, a and A, of a double or long double.
void appendReal(FormatOutput& out, const FormatConversion& conversion, const FormatArgument& argument);

} // namespace qrv
