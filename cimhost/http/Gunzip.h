#pragma once

#include <string>
#include <string_view>

namespace cimhost {

/// The text of a gzip file of our own (RFC 1952): one member without name or comment, whose length
/// is believed and whose checksum is not looked at. Throws std::invalid_argument for another.
std::string gunzip(std::string_view file);

}  // namespace cimhost
