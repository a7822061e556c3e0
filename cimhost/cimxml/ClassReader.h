#pragma once

#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/repository/Schema.h"

namespace cimhost {

/// The class that a CLASS element of another server defines, as it is written: what it leaves out,
/// inherited elements or qualifiers, is missing here too, and nothing is held against the rules of
/// classes. Its default values are read by `reader`. CimError invalidParameter: an element given
/// twice, an unknown type, a broken number; typeMismatch: a value that is none of its type.
Class readClass(const Element& element, const ModelReader& reader);

}  // namespace cimhost
