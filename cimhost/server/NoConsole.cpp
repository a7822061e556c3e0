#include "cimhost/server/ConsoleFile.h"

namespace cimhost {

std::span<const ConsoleFile> builtConsole() noexcept { return {}; }

}  // namespace cimhost
