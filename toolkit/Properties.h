#pragma once

#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiValue.h"
#include "pylcommon_export.h"
#include "toolkit/LocalPaths.h"

#include <optional>
#include <ranges>
#include <string>

/// @file
/// The properties of a provider's instances. A property that nobody sets stays NULL, which is how a
/// provider says that it does not know.
///
/// What the broker refuses is thrown as CmpiStatus. Each function works on the instance that it is
/// given alone: several threads may use them on instances of their own.
namespace PYL {

/// An instance with this path, whose key properties are set from the path. Good until the
/// provider's call returns.
PYL_EXPORT CmpiCpp::CmpiInstance makeInstanceAt(const CmpiCpp::CmpiObjectPath& path);

/// Sets the property when the value is known.
template <typename Value>
void setKnown(CmpiCpp::CmpiInstance& instance, const char* name,
              const std::optional<Value>& value) {
    if (value) instance.setProperty(name, *value);
}

/// Sets the property unless the text is empty.
PYL_EXPORT void setKnown(CmpiCpp::CmpiInstance& instance, const char* name,
                         const std::string& text);

/// An array of the values, none of them NULL, by the CIM type that CmpiValue gives theirs: texts
/// make a string array, unsigned short a uint16 array. Good until the provider's call returns.
template <std::ranges::sized_range Values>
CmpiCpp::CmpiArray makeArray(const Values& values) {
    const auto type = CmpiCpp::CmpiValue(std::ranges::range_value_t<Values>()).type();
    const auto size = static_cast<unsigned int>(std::ranges::size(values));
    auto array = CmpiCpp::makeCmpiArray(localBroker(), size, type);
    unsigned int index = 0;
    for (const auto& value : values) array.setElementAt(index++, value);
    return array;
}

/// Sets an array property unless there are no values.
template <std::ranges::sized_range Values>
void setArray(CmpiCpp::CmpiInstance& instance, const char* name, const Values& values) {
    if (std::ranges::size(values) > 0) instance.setProperty(name, makeArray(values));
}

}  // namespace PYL
