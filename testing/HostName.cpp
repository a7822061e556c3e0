#include "testing/cimhost/testing/HostName.h"

#include <unistd.h>

#include <cstring>
#include <utility>

namespace cimtest {
namespace {

// Built at its first use: the library may ask before this file's statics are made.
std::optional<std::string>& hostName() {
    static std::optional<std::string> name = testHostName;
    return name;
}

}  // namespace

void setTestHostName(std::optional<std::string> name) { hostName() = std::move(name); }

}  // namespace cimtest

// Takes the place of the C library's. Like some systems' it does not end a name that just fits.
extern "C" __attribute__((weak, visibility("default"))) int gethostname(char* buffer,
                                                                        size_t size) noexcept {
    const auto& name = cimtest::hostName();
    if (!name) return -1;
    std::strncpy(buffer, name->c_str(), size);
    return 0;
}
