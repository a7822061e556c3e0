#pragma once

#include <string>
#include <vector>

/// The texts of a table that ends with a null pointer.
inline std::vector<std::string> entries(const char* const* table) {
    std::vector<std::string> found;
    while (*table) found.emplace_back(*table++);
    return found;
}
