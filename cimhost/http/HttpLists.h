#pragma once

#include "cimhost/http/HttpRequest.h"

#include <string_view>

namespace cimhost {

/// True when the client takes replies of this content coding (RFC 9110, 12.5.3). Who does not say
/// so does not.
bool takesCoding(const HttpRequest& request, std::string_view coding) noexcept;

/// True when If-None-Match names this entity tag, which stands in quotes (RFC 9110, 13.1.2).
bool hasTag(const HttpRequest& request, std::string_view tag) noexcept;

}  // namespace cimhost
