#include "cimhost/http/HostNames.h"

#include "cimhost/http/HttpRequest.h"
#include "cimhost/http/TlsStream.h"

#include <arpa/inet.h>
#include <netdb.h>
#include <netinet/in.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <optional>
#include <thread>

namespace cimhost {
namespace {

constexpr std::chrono::seconds lookUpTime{2};

bool isAddress(const std::string& text, int family) noexcept {
    in6_addr address{};
    return inet_pton(family, text.c_str(), &address) == 1;
}

bool isPort(std::string_view text) noexcept {
    return text.empty() || (text.front() == ':' && text.size() <= 6 &&
                            text.find_first_not_of("0123456789", 1) == text.npos);
}

/// The host of host[:port]; nothing when it reads otherwise.
std::optional<std::string> hostOf(std::string_view authority) {
    const std::size_t bracket = authority.starts_with('[') ? authority.find(']') : 0;
    const std::size_t end = std::min(authority.find(':', bracket), authority.size());
    const std::string_view host = authority.substr(0, end);
    if (bracket > 0 && bracket + 1 != end) return std::nullopt;
    // A dot in front stands for all names below where certificates are looked into.
    if (host.empty() || host.front() == '.' || !isPort(authority.substr(end))) return std::nullopt;
    return std::string(host);
}

bool isBelow(std::string_view name, std::string_view domain) noexcept {
    return name.size() > domain.size() + 1 && name[name.size() - domain.size() - 1] == '.' &&
           equalTokens(name.substr(name.size() - domain.size()), domain);
}

}  // namespace

std::string machineName() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

std::string canonicalName(const std::string& name) {
    addrinfo hints{};
    hints.ai_flags = AI_CANONNAME;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    if (getaddrinfo(name.c_str(), nullptr, &hints, &found) != 0) return {};
    const std::unique_ptr<addrinfo, void (*)(addrinfo*)> owner(found, freeaddrinfo);
    return found->ai_canonname ? found->ai_canonname : "";
}

HostNames::HostNames(HostNameSources sources) : _sources(std::move(sources)) {}

bool HostNames::contain(std::string_view authority) const {
    std::optional<std::string> host = hostOf(authority);
    if (!host) return false;
    if (host->front() == '[') return isAddress(host->substr(1, host->size() - 2), AF_INET6);
    if (isAddress(*host, AF_INET)) return true;
    if (host->size() > 1 && host->back() == '.') host->pop_back();
    if (equalTokens(*host, "localhost") || isBelow(*host, "localhost")) return true;
    const auto isNamed = [&host](const std::string& each) { return equalTokens(each, *host); };
    return std::ranges::any_of(_sources.others, isNamed) ||
           (_sources.certificate && _sources.certificate->isNamed(*host)) || _isMachine(*host);
}

bool HostNames::_isMachine(std::string_view name) const {
    const std::string_view machine = _sources.machine;
    const std::string_view first = machine.substr(0, machine.find('.'));
    if (first.empty()) return false;
    if (equalTokens(name, machine) || equalTokens(name, first)) return true;
    return equalTokens(name.substr(0, first.size() + 1), std::string(first) + '.') &&
           equalTokens(name, _fullName());
}

/// Empty when the system's look-up takes too long. It cannot be interrupted: its thread is left to
/// itself then.
std::string HostNames::_fullName() const {
    std::call_once(_isAsked, [this] {
        std::packaged_task<std::string()> lookUp(
            [ask = _sources.lookUp, name = _sources.machine] { return ask(name); });
        _canonicalName = lookUp.get_future().share();
        std::thread(std::move(lookUp)).detach();
    });
    const bool isThere = _canonicalName.wait_for(lookUpTime) == std::future_status::ready;
    return isThere ? _canonicalName.get() : std::string{};
}

}  // namespace cimhost
