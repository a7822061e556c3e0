#pragma once

#include "cimhost/http/Descriptor.h"
#include "cimhost/http/HttpReply.h"
#include "cimhost/http/HttpRequest.h"
#include "cimhost/http/PlainStream.h"
#include "cimhost/http/TlsStream.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// What a server says of its answer, trailers included. Names compare in any case.
struct HttpAnswerHead {
    struct Field {
        std::string name;
        std::string value;
    };

    int status = 0;
    std::vector<Field> fields;

    std::optional<std::string_view> field(std::string_view name) const noexcept;
};

/// The bytes that came are no HTTP answer, or its head is too long.
class HttpClientError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Takes an answer as it comes. What it throws ends the exchange.
class HttpAnswerTaker {
public:
    virtual ~HttpAnswerTaker() = default;
    /// Without trailers yet.
    virtual void head(const HttpAnswerHead& answer) = 0;
    virtual void body(std::string_view piece) = 0;
};

/// Until when to wait for the server, which has said nothing since this time; asked anew whenever
/// that has come.
using HttpPatience = std::function<Clock::time_point(Clock::time_point silentSince)>;

/// A connection over which requests are made, one after the other; their answers come in pieces, so
/// that one of any length takes little memory. Used by one thread at a time.
class HttpClient {
public:
    static constexpr std::size_t headBytes = 64 * 1024;  ///< of an answer, and of its trailers
    static constexpr std::chrono::seconds usualSendTime{30};

    /// The socket does not block, and is connected before the first request. Each block of a
    /// request has the send time to leave, or as long as the patience, if that is more.
    explicit HttpClient(Descriptor socket, std::chrono::milliseconds sendTime = usualSendTime)
        : _socket(std::move(socket)), _plain(_socket.get()), _sendTime(sendTime) {}
    /// The same over TLS, with the host of this name. The trust outlives the client.
    HttpClient(Descriptor socket, const TlsTrust& trust, const std::string& host)
        : HttpClient(std::move(socket)) {
        _tls.emplace(_plain, trust, host);
    }
    HttpClient(const HttpClient&) = delete;
    HttpClient& operator=(const HttpClient&) = delete;

    /// Posts the body to `target`, with these headers and Content-Length. Each piece of the body of
    /// an answer with status 200 goes to `take`, whose exceptions end the exchange. Throws
    /// StreamError: timeout when nothing moved until the end of the patience; lost when the
    /// connection ends before the answer does. Throws HttpClientError.
    HttpAnswerHead post(std::string_view target, const std::vector<HttpAnswerHead::Field>& headers,
                        std::string_view body, const std::function<void(std::string_view)>& take,
                        const HttpPatience& patience);

    /// The same, whatever the status is. Answers the head with the trailers behind its fields.
    HttpAnswerHead post(std::string_view target, const std::vector<HttpAnswerHead::Field>& headers,
                        std::string_view body, HttpAnswerTaker& taker,
                        const HttpPatience& patience);

    /// Something came of the answer to the last request.
    bool hasAnswered() const noexcept { return _hasAnswered; }

    /// False once an exchange has failed, and when the server ended the connection or talks
    /// unasked.
    bool isReusable() const noexcept;

    int socket() const noexcept { return _socket.get(); }

private:
    class Parser;

    Stream& _stream() noexcept { return _tls ? static_cast<Stream&>(*_tls) : _plain; }
    void _send(std::string_view head, std::string_view body, const HttpPatience& patience);
    void _receive(Parser& parser, const HttpPatience& patience);
    std::size_t _receiveSome(std::span<char> buffer, const HttpPatience& patience);

    Descriptor _socket;
    PlainStream _plain;
    std::optional<TlsStream> _tls;
    std::chrono::milliseconds _sendTime;
    std::string _pending;  ///< arrived and not used yet
    bool _isGood = true;
    bool _hasAnswered = false;
};

}  // namespace cimhost
