#pragma once

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Literals.h"

#include <string>

/// The model as text. Pure functions, safe from several threads.
namespace cimhost {

/// `//host/namespace:Class.key="text",other=5`, without the parts that are empty (DSP0004, 8.2);
/// parseModelPath reads it.
std::string describe(const ObjectPath& path);

/// For a reader, much as MOF writes a value. With Escapes::mof as MOF reads it, embedded instances
/// as strings; CimError failed for what MOF has no literal for: a real that is no number, and what
/// `quoted` refuses.
std::string describe(const Value& value, Escapes escapes = Escapes::backslash);

/// `instance of Class { name = value; }`, values as above.
std::string describe(const Instance& instance, Escapes escapes = Escapes::backslash);

}  // namespace cimhost
