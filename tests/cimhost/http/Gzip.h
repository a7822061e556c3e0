#pragma once

#include "tests/support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <string_view>

namespace cimhost {

/// The text as the system's gzip packs it, without name and time.
inline std::string gzip(std::string_view text) {
    const TemporaryFolder folder;
    const std::string file = folder.write("text", std::string(text));
    if (std::system(("gzip -9n " + file).c_str()) != 0) throw std::runtime_error("gzip");
    std::ifstream packed(file + ".gz", std::ios::binary);
    return {std::istreambuf_iterator<char>(packed), {}};
}

}  // namespace cimhost
