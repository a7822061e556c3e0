#include "tests/support/SystemName.h"

#include <sys/utsname.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace {

// Built at its first use: somebody may ask before this file's statics are made.
std::optional<SystemName>& systemName() {
    static std::optional<SystemName> name = SystemName();
    return name;
}

template <std::size_t size>
void fill(char (&field)[size], const std::string& text) {
    std::strncpy(field, text.c_str(), size - 1);
}

}  // namespace

SystemNameIs::SystemNameIs(std::optional<SystemName> name) { systemName() = std::move(name); }

SystemNameIs::~SystemNameIs() { systemName() = SystemName(); }

// Takes the place of the C library's.
extern "C" __attribute__((visibility("default"))) int uname(utsname* buffer) noexcept {
    if (!systemName()) {
        errno = EFAULT;
        return -1;
    }
    *buffer = {};
    fill(buffer->sysname, "Linux");
    fill(buffer->machine, systemName()->machine);
    fill(buffer->release, systemName()->release);
    return 0;
}
