#include "tests/cimhost/client/PairedServer.h"

#include "cimhost/http/PlainStream.h"
#include "cimhost/server/CimXmlAdapter.h"

#include <sys/socket.h>

#include <array>
#include <memory>
#include <stdexcept>

namespace cimhost {

std::pair<Descriptor, Descriptor> socketPair() {
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        throw std::runtime_error("socketpair");
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

PairedServer::~PairedServer() {
    for (std::thread& each : _threads) each.join();
}

ClientTransport::Connect PairedServer::connect() {
    return [this] {
        ++_connections;
        auto [near, far] = socketPair();
        _threads.emplace_back([this, socket = std::make_shared<Descriptor>(std::move(far))] {
            PlainStream stream(socket->get());
            HttpPresence presence;
            HttpConnection(stream, {*this, _limits}, _budgets, {}, presence).serve();
        });
        return std::move(near);
    };
}

void PairedServer::handle(const HttpRequest& request, HttpReply& reply) {
    CimXmlRequest cimRequest{[&request](std::string_view name) { return request.header(name); },
                             request.body, request.principal, request.serverName()};
    cimRequest.isForwarded = _isForwarded;
    CimXmlHttpReply cimReply(reply);
    _handler.handle(cimRequest, cimReply);
}

ClientTransport::Connect RawServer::connect() {
    return [this] {
        auto [near, far] = socketPair();
        _thread = std::thread([this, socket = std::make_shared<Descriptor>(std::move(far))] {
            PlainStream stream(socket->get());
            const auto end = Clock::now() + std::chrono::seconds(30);
            std::array<char, 4096> block;
            try {
                while (request.find("</CIM>") == std::string::npos) {
                    const std::size_t count = stream.receive(block, end);
                    if (count == 0) return;
                    request.append(block.data(), count);
                }
                const std::string_view answer = _answer;
                stream.send({&answer, 1}, end);
            } catch (const StreamError&) {
                // The client has had enough.
            }
        });
        return std::move(near);
    };
}

}  // namespace cimhost
