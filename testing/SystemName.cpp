#include "testing/pylcommon/testing/SystemName.h"

#include <sys/utsname.h>

#include <cerrno>
#include <cstring>
#include <utility>

namespace cimtest {
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

}  // namespace cimtest

// Takes the place of the C library's.
extern "C" __attribute__((weak, visibility("default"))) int uname(utsname* buffer) noexcept {
    const auto& machine = cimtest::systemName();
    if (!machine) {
        errno = EFAULT;
        return -1;
    }
    *buffer = {};
    cimtest::fill(buffer->sysname, "Linux");
    cimtest::fill(buffer->machine, machine->machine);
    cimtest::fill(buffer->release, machine->release);
    return 0;
}
