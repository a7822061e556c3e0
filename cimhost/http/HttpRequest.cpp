#include "cimhost/http/HttpRequest.h"

#include <strings.h>

#include <algorithm>

namespace cimhost {
namespace {

constexpr std::size_t maximumHostBytes = 255 + 6;  // a DNS name, a colon and a port

bool isHostCharacter(char character) noexcept {
    constexpr std::string_view others = "-._:[]";
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'z') ||
           (character >= 'A' && character <= 'Z') || others.find(character) != others.npos;
}

bool isPlainHost(std::string_view host) noexcept {
    return !host.empty() && host.size() <= maximumHostBytes &&
           std::ranges::all_of(host, isHostCharacter);
}

/// Where the host of an absolute target begins; 0 for another target.
std::size_t authorityBegin(std::string_view target) noexcept {
    const std::size_t scheme = target.find("://");
    return scheme == target.npos || target.find_first_of("/?#") < scheme ? 0 : scheme + 3;
}

}  // namespace

std::optional<std::string_view> HttpRequest::header(std::string_view name) const noexcept {
    for (const HttpField& field : fields) {
        if (equalTokens(field.name, name)) return field.value;
    }
    return std::nullopt;
}

std::optional<std::string_view> HttpRequest::authority() const noexcept {
    const std::size_t begin = authorityBegin(target);
    if (begin == 0) return std::nullopt;
    const std::string_view rest = target.substr(begin);
    return rest.substr(0, rest.find_first_of("/?#"));
}

std::string_view HttpRequest::path() const noexcept {
    const auto host = authority();
    const std::string_view rest =
        host ? target.substr(authorityBegin(target) + host->size()) : target;
    const std::string_view path = rest.substr(0, rest.find_first_of("?#"));
    return host && path.empty() ? "/" : path;
}

std::string_view HttpRequest::serverName() const noexcept {
    const std::string_view host = header("Host").value_or(std::string_view{});
    return isPlainHost(host) ? host : localAddress;
}

bool equalTokens(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

}  // namespace cimhost
