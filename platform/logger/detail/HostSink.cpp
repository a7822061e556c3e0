#include "platform/logger/detail/HostSink.h"

#include <dlfcn.h>

HostSink::~HostSink() = default;

HostSink::Write HostSink::find() noexcept {
    return reinterpret_cast<Write>(::dlsym(RTLD_DEFAULT, "cimhost_write_log"));
}

void HostSink::write(LogLevel level, std::string_view source, std::string_view message) noexcept {
    // Hosts number the levels in the order of ours.
    _write(static_cast<int>(level), source.data(), source.size(), message.data(), message.size());
}
