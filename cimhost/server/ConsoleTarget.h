#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace cimhost {

/// The object manager that a console shows: `https://host[:port][/path]`, or http.
struct ConsoleTarget {
    bool usesTls = true;
    std::string host;  ///< a name or address; an IPv6 one without brackets
    std::uint16_t port = 0;
    std::string path;  ///< empty: none is named

    /// Scheme, host and port.
    std::string url() const;
};

/// Without a port the usual one of CIM-XML is meant: 5989, or 5988 without TLS. Throws UsageError
/// for what is no such URL.
ConsoleTarget parseConsoleTarget(std::string_view text);

}  // namespace cimhost
