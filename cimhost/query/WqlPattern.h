#pragma once

#include <string_view>

namespace cimhost {

/// True when the whole text is of this pattern of WQL's LIKE: `%` is any text, `_` any character,
/// `[ab]` and `[a-z]` one of those, `[^ab]` any other. A bracket that is not closed stands for
/// itself. Takes time in proportion to the product of both lengths at most. Safe from several
/// threads.
bool isLike(std::string_view text, std::string_view pattern);

}  // namespace cimhost
