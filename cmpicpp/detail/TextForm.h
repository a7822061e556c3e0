#pragma once

#include "cmpi/cmpift.h"

#include <string>

/// Text forms over the C interface, appended to one buffer. Each is a single line: control
/// characters are escaped as MOF does (DSP0004, annex A), bytes from 0x80 on are copied. Not
/// installed.
namespace CmpiCpp {

/// As CmpiData::str(). A value that the object manager cannot give reads `<bad value>`.
void appendData(std::string& out, const CMPIData& data);

/// As CmpiObjectPath::str(), of a path that is not empty. Throws CmpiStatus.
void appendPath(std::string& out, const CMPIObjectPath* path);

/// As CmpiInstance::str(), of an instance that is not empty. Throws CmpiStatus.
void appendInstance(std::string& out, const CMPIInstance* instance);

/// As CmpiArray::str(), of an array that is not empty. Throws CmpiStatus.
void appendArray(std::string& out, const CMPIArray* array);

/// A UTF-16 code unit as UTF-8; half of a surrogate pair appends nothing and returns false.
bool appendUtf8(std::string& out, CMPIChar16 unit);

/// Room for the text of most paths, so that their making allocates once.
constexpr std::size_t usualPathText = 240;

}  // namespace CmpiCpp
