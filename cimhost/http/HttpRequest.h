#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

struct HttpField {
    std::string_view name;
    std::string_view value;  ///< without surrounding blanks
};

/// One HTTP request. The views are good until the parser that filled it starts on the next request.
struct HttpRequest {
    std::string_view method;
    std::string_view target;
    bool isHttp11 = true;
    bool keepAlive = true;
    bool isChunked = false;
    std::optional<std::uint64_t> contentLength;
    std::vector<HttpField> fields;
    std::string body;

    std::string_view principal;     ///< the authenticated user, or empty
    std::string_view localAddress;  ///< address:port that the client reached us by

    /// The value of the first field with this name in any case.
    std::optional<std::string_view> header(std::string_view name) const noexcept;

    bool hasBody() const noexcept { return isChunked || contentLength.value_or(0) > 0; }

    /// host[:port] of a target that holds it.
    std::optional<std::string_view> authority() const noexcept;

    /// The target without its query, and without scheme and host where it has them.
    std::string_view path() const noexcept;

    /// What the client calls this server: the Host header if it reads as host[:port], else the
    /// local address. Holds nothing that needs escaping in a URL or in XML.
    std::string_view serverName() const noexcept;
};

bool equalTokens(std::string_view left, std::string_view right) noexcept;

}  // namespace cimhost
