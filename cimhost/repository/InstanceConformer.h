#pragma once

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/MemoryBudget.h"
#include "cimhost/repository/Schema.h"

/// Instances and paths held against their classes.
namespace cimhost {

class NameSpace;

/// Gives the path's names and key types the form that its class has for them; keys that are
/// references in turn. Untouched when the path leads to another namespace or an unknown class.
/// Throws CimError noSuchProperty, typeMismatch.
void conformPath(const NameSpace& nameSpace, ObjectPath& path);

/// The value as the property's type; references conformed to their classes.
/// Throws CimError typeMismatch, noSuchProperty.
Value conformPropertyValue(const NameSpace& nameSpace, const Value& value,
                           const PropertyDefinition& property);

/// The properties in order of the class, with their declared types and the defaults of those not
/// given. Keys are not looked at. Throws as NameSpace::addInstance does.
Instance conformProperties(const NameSpace& nameSpace, MemoryBudget& budget,
                           const Class& definition, Instance instance);

/// An instance that can be stored: properties conformed, the full path made of its keys.
Instance conformInstance(const NameSpace& nameSpace, MemoryBudget& budget, Instance instance);

}  // namespace cimhost
