#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/client/ClientTransport.h"
#include "cimhost/http/HttpConnection.h"
#include "cimhost/http/HttpLimits.h"

#include <atomic>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

namespace cimhost {

/// A connected pair of sockets that do not block.
std::pair<Descriptor, Descriptor> socketPair();

/// Serves every connection that a client makes, each on a thread of its own, over socket pairs.
class PairedServer final : private HttpHandler {
public:
    explicit PairedServer(const CimXmlHandler& handler, bool isForwarded = false)
        : _handler(handler), _isForwarded(isForwarded) {}
    /// The clients' ends are closed by now.
    ~PairedServer() override;

    ClientTransport::Connect connect();
    int connections() const noexcept { return _connections; }

private:
    void handle(const HttpRequest& request, HttpReply& reply) override;

    const CimXmlHandler& _handler;
    bool _isForwarded;
    HttpLimits _limits;
    HttpBudgets _budgets{_limits};
    std::atomic<int> _connections = 0;
    std::vector<std::thread> _threads;
};

/// Reads a request to its end and answers these bytes, then ends the connection. Once.
class RawServer {
public:
    explicit RawServer(std::string answer) : _answer(std::move(answer)) {}
    ~RawServer() {
        if (_thread.joinable()) _thread.join();
    }

    ClientTransport::Connect connect();
    std::string request;

private:
    std::string _answer;
    std::thread _thread;
};

}  // namespace cimhost
