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
           std::all_of(host.begin(), host.end(), isHostCharacter);
}

}  // namespace

std::optional<std::string_view> HttpRequest::header(std::string_view name) const noexcept {
    for (const HttpField& field : fields) {
        if (equalTokens(field.name, name)) return field.value;
    }
    return std::nullopt;
}

std::string_view HttpRequest::path() const noexcept {
    std::string_view path = target.substr(0, target.find_first_of("?#"));
    if (const auto scheme = path.find("://"); scheme != path.npos && !path.starts_with('/')) {
        path.remove_prefix(std::min(path.find('/', scheme + 3), path.size()));
        if (path.empty()) return "/";
    }
    return path;
}

std::string_view HttpRequest::serverName() const noexcept {
    const std::string_view host = header("Host").value_or(std::string_view{});
    return isPlainHost(host) ? host : localAddress;
}

bool equalTokens(std::string_view left, std::string_view right) noexcept {
    return left.size() == right.size() && strncasecmp(left.data(), right.data(), left.size()) == 0;
}

}  // namespace cimhost
