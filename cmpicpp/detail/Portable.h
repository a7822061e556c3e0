#pragma once

#include "cmpi/cmpift.h"

/// What goes to an object manager, in the form that all of them take. Each of these asks the same
/// of every host, also where this one would take more: a provider is to fail on its author's desk
/// rather than take another host with it. Failures are CmpiStatus. Not installed.
namespace CmpiCpp {

/// The name, which is an identifier (DSP0004, annex A): others make some hosts throw.
/// Throws CMPI_RC_ERR_INVALID_PARAMETER.
const char* legalName(const char* name);

/// The same for each name of a list that a null pointer ends; none for nullptr.
const char** legalNames(const char** names);

/// An array with a NULL text, datetime, reference or instance, on its way into an argument, a
/// result or a property: there are hosts that read the null pointer when they take it over.
/// Throws CMPI_RC_ERR_INVALID_PARAMETER. Nothing for other values.
void requireNoNullObjects(const CMPIValue* value, CMPIType type);

/// A copy of the text, path, instance or datetime in a value of this type that ends with the
/// provider's call and not before. Other values come as they are.
CMPIValue untilTheCallEnds(const CMPIBroker* broker, const CMPIValue& value, CMPIType type);

}  // namespace CmpiCpp
