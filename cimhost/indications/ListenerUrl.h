#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cimhost {

/// Where a listener is, as a destination names it: `http://host[:port][/path]`, or `console:` for
/// those who look at the server's events.
struct ListenerUrl {
    std::string host{};  ///< a name or address; an IPv6 one without brackets
    std::uint16_t port = 80;
    std::string path = "/";
    bool isConsole = false;  ///< then there is nothing of the others

    /// host:port as the Host header has it.
    std::string authority() const;
};

/// Throws CimError notSupported for https, which indications cannot be sent over; invalidParameter
/// for any other text that is no such URL. Safe from several threads.
ListenerUrl parseListenerUrl(std::string_view text);

}  // namespace cimhost
