#pragma once

#include <optional>
#include <string>

namespace cimtest {

/// What uname(2) tells of a machine, as far as the library asks.
struct SystemName {
    std::string machine = "x86_64";      ///< as `uname -m` prints it
    std::string release = "6.1.0-test";  ///< as `uname -r` prints it
};

/// The test program answers uname(2) itself: the machine is the one above unless a scope says
/// otherwise.
class SystemNameIs {
public:
    /// nullopt makes the call fail.
    explicit SystemNameIs(std::optional<SystemName> name);
    ~SystemNameIs();
    SystemNameIs(const SystemNameIs&) = delete;
    SystemNameIs& operator=(const SystemNameIs&) = delete;
};

}  // namespace cimtest
