#pragma once

#include "cimhost/http/Stream.h"

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>

namespace cimhost {

/// What a server answered a request of ours with.
struct HttpAnswer {
    int status = 0;
    bool keepsAlive = false;  ///< the connection can carry another request
    std::string body;
};

/// The bytes that came are no HTTP answer, or more than one may have.
class HttpAnswerError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads the answers to requests on one connection, one after the other. Used by one thread.
class HttpAnswerReader {
public:
    static constexpr std::size_t headBytes = 16 * 1024;
    static constexpr std::uint64_t bodyBytes = 64 * 1024;
    static constexpr std::size_t wireBytes = 256 * 1024;  ///< of one answer, framing included

    explicit HttpAnswerReader(Stream& stream) noexcept : _stream(stream) {}

    /// The next answer; interim ones (1xx) are passed over. Throws StreamError, HttpAnswerError;
    /// StreamError lost when the connection ends before the answer does.
    HttpAnswer receive(Clock::time_point deadline);

    /// True when some of the answer has arrived.
    bool hasBegun() const noexcept { return _received != 0; }

private:
    template <typename Parser>
    void _fill(Parser& parser, Clock::time_point deadline);
    template <typename Parser>
    void _receiveMore(Parser& parser, Clock::time_point deadline);

    Stream& _stream;
    std::string _pending;  ///< arrived and not used yet
    std::size_t _received = 0;
};

}  // namespace cimhost
