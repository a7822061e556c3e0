#include "platform/logger/detail/HostSink.h"

#include <dlfcn.h>

HostSink::~HostSink() = default;

HostSink::Write HostSink::find() noexcept {
    return reinterpret_cast<Write>(::dlsym(RTLD_DEFAULT, "cimhost_write_log"));
}

void HostSink::write(LogLevel level, std::string_view source, std::string_view message) noexcept {
    const auto number = [level] {
        switch (level) {
            case LogLevel::error: return 0;
            case LogLevel::warning: return 1;
            case LogLevel::information: return 2;
        }
        return 0;
    }();
    _write(number, source.data(), source.size(), message.data(), message.size());
}
