#pragma once

#include "cimhost/cimxml/XmlDocument.h"

#include <string>
#include <string_view>

/// The CIMObject header held against the request's body (DSP0200, 6.3.6).
///
/// Clients write the header in their own ways: percent-encoded or not, keys in any order,
/// references quoted as text or bare. It is therefore parsed along the path in the body, which says
/// what each part has to be. Pure functions, safe from several threads.
namespace cimhost {

/// The text with each %XX made a byte; anything else that follows a % stays as it is.
std::string percentDecode(std::string_view text);

/// Text as a header may carry it: what is no visible ASCII, and '%', as %XX of its bytes.
std::string escapeForHeader(std::string_view text);

/// True when both name the same namespace; outer slashes do not count.
bool sameNameSpace(std::string_view left, std::string_view right) noexcept;

/// True when the header (decoded) names the target of a method call: `localPath` is the
/// LOCALCLASSPATH or LOCALINSTANCEPATH.
bool namesTarget(std::string_view header, const Element& localPath);

}  // namespace cimhost
