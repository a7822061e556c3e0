#pragma once

#include "cimhost/repository/Literals.h"

#include <optional>
#include <string_view>

/// The text of scalar values in CIM-XML (DSP0201, VALUE element). Pure functions, safe from several
/// threads.
namespace cimhost {

/// The scalar of this type that the text stands for. Booleans in any case, integers in decimal or
/// hexadecimal, reals also as NaN, INF and -INF; blanks round these are passed over.
/// Nothing when the text is no such value or its number is out of the type's range, and for
/// references and embedded instances, which are no text.
std::optional<Value> readScalar(CimType type, std::string_view text);

/// Room for the text of any value that is not a string.
using ScalarScratch = NumberScratch;

/// The text of a scalar, not escaped: in `scratch`, or the value's own string.
/// Empty for NULL, references and embedded instances.
std::string_view scalarText(const Value& value, ScalarScratch& scratch);

}  // namespace cimhost
