#pragma once

#include <string>
#include <string_view>

/// Another parser's view of XML, for tests.
namespace cimhost {

/// True when the text is one XML document.
bool isWellFormedXml(std::string_view text);

/// What is wrong with a reply of the CIM-XML server: empty when its elements, their order and their
/// attributes are those of DSP0203 and the text has the form that every client in use can read.
std::string problemOfReply(std::string_view reply);

}  // namespace cimhost
