#include "bench/library/Sides.h"

#include <cstdlib>
#include <iostream>

void requireDelivered(CMPIStatus status, std::size_t delivered, std::size_t expected) {
    if (status.rc == CMPI_RC_OK && delivered == expected) [[likely]] {
        return;
    }
    std::cerr << "expected " << expected << " objects, got " << delivered << " and status "
              << status.rc << '\n';
    std::exit(1);
}
