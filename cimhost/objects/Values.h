#pragma once

#include "cimhost/objects/Object.h"
#include "cimhost/objects/Objects.h"

#include <cstring>
#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// As toCmpi of Objects.h, with the objects made for this home.
CMPIData toCmpi(const Home& home, const Value& value);

/// As fromCmpi of Objects.h, for table functions: a type code that cannot be kept is Failure
/// CMPI_RC_ERR_INVALID_DATA_TYPE, a foreign handle CMPI_RC_ERR_INVALID_HANDLE, an array of another
/// type CMPI_RC_ERR_TYPE_MISMATCH.
Value valueOf(const CMPIValue* value, CMPIType type);

/// What a provider gave at this address: no more of it is there than the member's bytes, and it may
/// lie as a CMPIValue does not, since `(CMPIValue*)&number` is how values are given.
template <typename Member>
Member readMember(const void* value) noexcept {
    Member member;
    std::memcpy(&member, value, sizeof member);
    return member;
}

/// A text that may be left out.
inline std::string textOrEmpty(const char* text) { return text ? text : std::string(); }

/// The names of a list that ends with a null pointer; a list that is one itself means all names.
std::optional<std::vector<std::string>> namesOf(const char** names);

/// Adds CMPI_keyValue.
inline CMPIData asKey(CMPIData data) noexcept {
    data.state = static_cast<CMPIValueState>(data.state | CMPI_keyValue);
    return data;
}

}  // namespace cimhost
