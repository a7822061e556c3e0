#pragma once

#include <cstdio>
#include <cstdlib>

/// Ends the program with a finding when what must hold does not.
inline void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "Does not hold: %s\n", what);
    std::abort();
}
