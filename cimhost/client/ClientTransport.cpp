#include "cimhost/client/ClientTransport.h"

#include <fcntl.h>
#include <netdb.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

#include <cerrno>
#include <system_error>
#include <utility>

namespace cimhost {
namespace {

constexpr std::chrono::seconds usualPatience{60};

[[noreturn]] void throwLost(const std::string& what) {
    throw StreamError(StreamError::Kind::lost, what);
}

using Addresses = std::unique_ptr<addrinfo, void (*)(addrinfo*)>;

Addresses readAddress(const std::string& address, std::uint16_t port) {
    addrinfo hints{};
    hints.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = getaddrinfo(address.c_str(), std::to_string(port).c_str(), &hints, &found);
    if (error != 0) throwLost(address + " is no numeric address: " + gai_strerror(error));
    return {found, freeaddrinfo};
}

}  // namespace

ClientTransport::ClientTransport(Connect connect, Settings settings)
    : _connect(std::move(connect)), _settings(std::move(settings)) {
    if (_settings.patience) return;
    _settings.patience = [](auto silentSince) { return silentSince + usualPatience; };
}

HttpAnswerHead ClientTransport::post(std::vector<HttpAnswerHead::Field> headers,
                                     std::string_view body,
                                     const std::function<void(std::string_view)>& take) {
    headers.push_back({"Host", _settings.host});
    headers.push_back({"Content-Type", "application/xml; charset=\"utf-8\""});
    auto client = _borrow();
    HttpAnswerHead answer = client->post("/cimom", headers, body, take, _settings.patience);
    _return(std::move(client));
    return answer;
}

std::unique_ptr<HttpClient> ClientTransport::_borrow() {
    {
        const std::lock_guard lock(_mutex);
        while (!_idle.empty()) {
            auto client = std::move(_idle.back());
            _idle.pop_back();
            if (client->isReusable()) return client;
        }
    }
    return std::make_unique<HttpClient>(_connect());
}

void ClientTransport::_return(std::unique_ptr<HttpClient> client) {
    if (!client->isReusable()) return;
    const std::lock_guard lock(_mutex);
    _idle.push_back(std::move(client));
}

Descriptor connectTo(const std::string& address, std::uint16_t port) {
    const Addresses found = readAddress(address, port);
    Descriptor socket(::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (!socket || connect(socket.get(), found->ai_addr, found->ai_addrlen) != 0) {
        throwLost("cannot connect to " + address + ": " + std::generic_category().message(errno));
    }
    const int on = 1;
    setsockopt(socket.get(), IPPROTO_TCP, TCP_NODELAY, &on, sizeof on);
    fcntl(socket.get(), F_SETFL, O_NONBLOCK);
    return socket;
}

std::string basicAuthorization(std::string_view user, std::string_view password) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text = "Basic ";
    std::uint32_t bits = 0;
    int count = 0;
    for (const char character : std::string(user) + ':' + std::string(password)) {
        bits = bits << 8U | static_cast<unsigned char>(character);
        for (count += 8; count >= 6;) text += digits[bits >> (count -= 6) & 63U];
    }
    if (count > 0) text += digits[bits << (6 - count) & 63U];
    while ((text.size() - 6) % 4 != 0) text += '=';
    return text;
}

}  // namespace cimhost
