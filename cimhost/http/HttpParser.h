#pragma once

#include "cimhost/http/HttpHead.h"
#include "cimhost/http/HttpLimits.h"
#include "cimhost/http/HttpRequest.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace cimhost {

/// Reads requests from the bytes of a connection, one after the other.
///
/// Strict where two readers could differ about where a request ends: one Content-Length or one
/// `Transfer-Encoding: chunked`, never both, no folded lines, no line that ends in a bare LF.
/// Used by one thread.
class HttpParser {
public:
    enum class State {
        head,          ///< wants more of the head
        headComplete,  ///< the head may be looked at; the next feed() goes on with the body
        body,          ///< wants more of the body
        complete,      ///< the request is all there
        refused,       ///< see refusal(); where the next request begins cannot be known
    };

    explicit HttpParser(const HttpLimits& limits);
    ~HttpParser();
    HttpParser(const HttpParser&) = delete;
    HttpParser& operator=(const HttpParser&) = delete;

    /// Takes bytes in order and returns how many it used. What is left must be given again, at the
    /// front of what arrived since. Stops at the end of the head and at the end of the request.
    std::size_t feed(std::string_view bytes);

    State state() const noexcept { return _state; }
    /// The HTTP status that answers a refused request.
    int refusal() const noexcept { return _refusal; }
    /// True when some of a request has arrived.
    bool hasBegun() const noexcept { return _state != State::head || !_head.isEmpty(); }

    /// The request so far: its fields from headComplete on, its body once complete.
    HttpRequest& request() noexcept { return _request; }

    /// The body still arrives and is counted, but is not kept.
    void discardBody() noexcept { _discardsBody = true; }

    /// Forgets the body alone. The memory of a long one is freed.
    void releaseBody();

    /// Forgets the request; the next one may begin.
    void clear();

private:
    class Reader;

    std::size_t _feedHead(std::string_view bytes);
    std::size_t _feedBody(std::string_view bytes);
    void _readHead();
    void _refuse(int status) noexcept;

    const HttpLimits& _limits;
    HttpHead _head;
    HttpRequest _request;
    std::unique_ptr<Reader> _reader;
    State _state = State::head;
    int _refusal = 0;
    bool _discardsBody = false;
};

}  // namespace cimhost
