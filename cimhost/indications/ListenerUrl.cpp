#include "cimhost/indications/ListenerUrl.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <charconv>

namespace cimhost {

namespace {

constexpr std::size_t longestHost = 253;
constexpr std::size_t longestUrl = 2048;

[[noreturn]] void refuse(std::string_view text) {
    throw CimError(CimCode::invalidParameter, "destination '" + std::string(text) +
                                                  "' is not of the form http://host[:port]/path");
}

bool isLetterOrDigit(char c) noexcept {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHost(std::string_view host, std::string_view others) noexcept {
    return !host.empty() && host.size() <= longestHost &&
           std::ranges::all_of(host, [others](char c) {
               return isLetterOrDigit(c) || others.find(c) != std::string_view::npos;
           });
}

bool isVisible(std::string_view text) noexcept {
    return std::ranges::all_of(text, [](char c) { return c > ' ' && c < 0x7F; });
}

/// Takes the host off the front, with the brackets of an IPv6 address.
std::string takeHost(std::string_view& authority, std::string_view whole) {
    if (authority.starts_with('[')) {
        const std::size_t end = authority.find(']');
        if (end == std::string_view::npos) refuse(whole);
        const std::string_view host = authority.substr(1, end - 1);
        authority.remove_prefix(end + 1);
        if (!isHost(host, ":.%")) refuse(whole);
        return std::string(host);
    }
    const std::string_view host = authority.substr(0, authority.find(':'));
    authority.remove_prefix(host.size());
    if (!isHost(host, "-._")) refuse(whole);
    return std::string(host);
}

std::uint16_t readPort(std::string_view text, std::string_view whole) {
    std::uint16_t port = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
    if (error != std::errc() || end != text.data() + text.size() || port == 0) refuse(whole);
    return port;
}

}  // namespace

std::string ListenerUrl::authority() const {
    const bool isAddress = host.find(':') != std::string::npos;
    return (isAddress ? "[" + host + "]" : host) + ":" + std::to_string(port);
}

ListenerUrl parseListenerUrl(std::string_view text) {
    if (equalNames(text, "console:")) return {.isConsole = true};
    constexpr std::string_view plain = "http://";
    constexpr std::string_view secure = "https://";
    if (equalNames(text.substr(0, secure.size()), secure)) {
        throw CimError(CimCode::notSupported,
                       "destination '" + std::string(text) +
                           "' needs TLS, which indications cannot be sent over; use http");
    }
    const bool isPlain = equalNames(text.substr(0, plain.size()), plain);
    if (!isPlain || text.size() > longestUrl || !isVisible(text) ||
        text.find('#') != std::string_view::npos) {
        refuse(text);
    }
    std::string_view rest = text.substr(plain.size());
    std::string_view authority = rest.substr(0, rest.find_first_of("/?"));
    rest.remove_prefix(authority.size());
    ListenerUrl url;
    url.host = takeHost(authority, text);
    if (authority.starts_with(':')) {
        url.port = readPort(authority.substr(1), text);
    } else if (!authority.empty()) {
        refuse(text);
    }
    if (!rest.empty()) url.path = (rest.front() == '?' ? "/" : "") + std::string(rest);
    return url;
}

}  // namespace cimhost
