#pragma once

#include <span>
#include <string_view>

namespace cimhost {

/// A file of the console's page, in memory as long as the program.
struct ConsoleFile {
    std::string_view path;  ///< that it is asked for by
    std::string_view type;
    std::string_view tag;   ///< another one for other bytes
    std::string_view gzip;  ///< its compressed bytes
};

/// The page as it was built into this program; empty where it was built without.
std::span<const ConsoleFile> builtConsole() noexcept;

}  // namespace cimhost
