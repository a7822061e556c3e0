#pragma once

#include "cimhost/http/HttpServer.h"

#include <atomic>
#include <functional>
#include <mutex>
#include <string>

namespace cimhost {

/// Answers with the body of the request unless the test says otherwise.
class TestHandler final : public HttpHandler {
public:
    using Function = std::function<void(const HttpRequest&, HttpReply&)>;

    TestHandler() = default;
    explicit TestHandler(Function function) : _function(std::move(function)) {}

    void handle(const HttpRequest& request, HttpReply& reply) override {
        ++calls;
        if (_function) {
            _function(request, reply);
        } else {
            reply.write(request.body);
        }
    }

    std::string_view about() const noexcept override { return words; }

    std::atomic<int> calls = 0;
    std::string_view words;

private:
    Function _function;
};

/// A handler that writes so much that no socket's buffers hold it, and tells when it has.
struct LongReply {
    static constexpr std::size_t bytes = 20'000'000;
    std::atomic<int> written = 0;

    void operator()(const HttpRequest&, HttpReply& reply);
    /// What it writes.
    static std::string text();
};

/// A handler whose replies stay open, with a word now and then.
struct OpenReply {
    std::atomic<int> begun = 0;
    std::atomic<int> ended = 0;
    std::atomic<int> words = 0;  ///< that each reply should have said by now

    void operator()(const HttpRequest&, HttpReply& reply);
};

/// A running server on a free port.
struct TestServer {
    TestHandler handler;
    HttpLimits limits;
    HttpServer server;

    explicit TestServer(TestHandler::Function function = {}, HttpLimits wanted = {},
                        Authenticator* authenticator = nullptr, const TlsContext* tls = nullptr,
                        AccessLog* accessLog = nullptr)
        : handler(std::move(function)),
          limits(wanted),
          server(ListenSocket("127.0.0.1", 0), {handler, limits, authenticator, accessLog}, tls) {
        server.start();
    }

    std::uint16_t port() const { return server.listener().port(); }

    /// Waits until so many connections are open; false after ten seconds.
    bool awaitConnections(std::size_t count) const;
};

/// Waits until the condition holds; false after ten seconds.
bool await(const std::function<bool()>& condition);

/// How many descriptors this process has open.
std::size_t openDescriptors();

}  // namespace cimhost
