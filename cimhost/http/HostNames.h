#pragma once

#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

class TlsContext;

/// The name of this machine as it has it itself; empty when it has none.
std::string machineName();

/// What the system's look-up makes of a host name, most often the name with its domain. Takes as
/// long as the look-up.
std::string canonicalName(const std::string& name);

/// What makes a name one of a server's own.
struct HostNameSources {
    std::vector<std::string> others{};        ///< that somebody says it has
    const TlsContext* certificate = nullptr;  ///< whose names count too; outlives what uses this
    std::string machine = machineName();
    std::function<std::string(const std::string&)> lookUp = canonicalName;
};

/// The names that a server goes by.
///
/// Whoever owns a name can have it stand for any address, for one of this machine too: to a browser
/// the server is then a part of that owner's site, whose pages may ask it what they like. They
/// cannot help naming the site in the Host header. An address cannot be lent so, nor can
/// "localhost" and the names below it. Safe from several threads.
class HostNames {
public:
    explicit HostNames(HostNameSources sources = {});

    /// Whether the server goes by the host of host[:port], as the Host header or a URL has it. May
    /// wait for a look-up, once and two seconds at most, for what reads as this machine's name with
    /// a domain.
    bool contain(std::string_view authority) const;

private:
    bool _isMachine(std::string_view name) const;
    std::string _fullName() const;

    HostNameSources _sources;
    mutable std::once_flag _isAsked;
    mutable std::shared_future<std::string> _canonicalName;
};

}  // namespace cimhost
