#include "tests/cimhost/http/ScriptedServer.h"

#include "cimhost/http/PlainStream.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <optional>

namespace cimhost {
namespace {

Clock::time_point longFromNow() { return Clock::now() + std::chrono::seconds(60); }

/// How long the first request in these bytes is; 0 while some of it is missing.
std::size_t sizeOfRequest(std::string_view bytes) {
    constexpr std::string_view lengthField = "Content-Length: ";
    const std::size_t headEnd = bytes.find("\r\n\r\n");
    if (headEnd == bytes.npos) return 0;
    const std::size_t length = bytes.find(lengthField);
    std::size_t size = headEnd + 4;
    if (length < headEnd) {
        size += std::stoul(std::string(bytes.substr(length + lengthField.size())));
    }
    return size <= bytes.size() ? size : 0;
}

}  // namespace

ScriptedServer::ScriptedServer(Script script, const TlsContext* tls)
    : _script(std::move(script)), _tls(tls), _acceptor([this] { _accept(); }) {}

ScriptedServer::~ScriptedServer() {
    shutdown(_listener.handle(), SHUT_RDWR);
    _acceptor.join();
    for (const Descriptor& each : _sockets) shutdown(each.get(), SHUT_RDWR);
    for (std::thread& each : _threads) each.join();
}

void ScriptedServer::_accept() {
    for (;;) {
        pollfd entry{_listener.handle(), POLLIN, 0};
        poll(&entry, 1, -1);
        Descriptor client(accept4(_listener.handle(), nullptr, nullptr, SOCK_NONBLOCK));
        if (!client && errno == EINVAL) return;
        if (!client) continue;
        const std::lock_guard lock(_mutex);
        const int socket = _sockets.emplace_back(std::move(client)).get();
        _threads.emplace_back([this, socket] { _serve(socket); });
    }
}

void ScriptedServer::_serve(int socket) {
    PlainStream plain(socket);
    std::optional<TlsStream> tls;
    if (_tls) tls.emplace(plain, *_tls);
    Stream& stream = tls ? static_cast<Stream&>(*tls) : plain;
    std::string received;
    std::array<char, 16384> block;
    try {
        for (bool goesOn = true; goesOn;) {
            while (sizeOfRequest(received) == 0) {
                const std::size_t count = stream.receive(block, longFromNow());
                if (count == 0) return;
                received.append(block.data(), count);
            }
            const std::string request = received.substr(0, sizeOfRequest(received));
            received.erase(0, request.size());
            {
                const std::lock_guard lock(_mutex);
                _requests.push_back(request);
            }
            goesOn = _script(request, stream);
        }
        stream.endSending();
    } catch (const StreamError&) {
        // The client has had enough.
    }
    shutdown(socket, SHUT_RDWR);
}

std::size_t ScriptedServer::connections() const {
    const std::lock_guard lock(_mutex);
    return _sockets.size();
}

std::vector<std::string> ScriptedServer::requests() const {
    const std::lock_guard lock(_mutex);
    return _requests;
}

void send(Stream& client, std::string_view bytes) { client.send({&bytes, 1}, longFromNow()); }

std::string answerWith(std::string_view body, std::string_view moreHeaders) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
           std::string(moreHeaders) + "\r\n" + std::string(body);
}

}  // namespace cimhost
