#pragma once

#include <optional>
#include <string>

namespace cimtest {

/// The test program answers gethostname(2) itself, so that paths read the same on every machine.
constexpr const char* testHostName = "server-1";

/// From now on the host has this name; nullopt makes the call fail.
void setTestHostName(std::optional<std::string> name);

/// Another host name for one scope.
class HostNameIs {
public:
    /// nullopt makes the call fail.
    explicit HostNameIs(std::optional<std::string> name) { setTestHostName(std::move(name)); }
    ~HostNameIs() { setTestHostName(testHostName); }
    HostNameIs(const HostNameIs&) = delete;
    HostNameIs& operator=(const HostNameIs&) = delete;
};

}  // namespace cimtest
