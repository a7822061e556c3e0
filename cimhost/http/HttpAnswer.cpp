#include "cimhost/http/HttpAnswer.h"

#include <boost/beast/http.hpp>

#include <array>

namespace cimhost {
namespace {

namespace http = boost::beast::http;
using Parser = http::response_parser<http::string_body>;

constexpr int mostInterimAnswers = 8;

[[noreturn]] void throwGarbage(const boost::system::error_code& error) {
    throw HttpAnswerError("the answer is no HTTP: " + error.message());
}

}  // namespace

template <typename AnyParser>
void HttpAnswerReader::_receiveMore(AnyParser& parser, Clock::time_point deadline) {
    std::array<char, 4096> block;
    const std::size_t count = _stream.receive(block, deadline);
    if (count == 0) {
        if (!parser.is_header_done()) {
            throw StreamError(StreamError::Kind::lost, "the listener closed the connection");
        }
        boost::system::error_code error;
        parser.put_eof(error);
        if (error) throw StreamError(StreamError::Kind::lost, "the answer was cut off");
        return;
    }
    _received += count;
    if (_received > wireBytes) throw HttpAnswerError("the answer is too long");
    _pending.append(block.data(), count);
}

template <typename AnyParser>
void HttpAnswerReader::_fill(AnyParser& parser, Clock::time_point deadline) {
    while (!parser.is_done()) {
        boost::system::error_code error;
        std::size_t used = 0;
        if (!_pending.empty()) {
            used = parser.put(boost::asio::buffer(_pending), error);
            _pending.erase(0, used);
        }
        if (error && error != http::error::need_more) throwGarbage(error);
        if (!parser.is_done() && (used == 0 || _pending.empty())) _receiveMore(parser, deadline);
    }
}

HttpAnswer HttpAnswerReader::receive(Clock::time_point deadline) {
    _received = 0;
    for (int i = 0; i < mostInterimAnswers; ++i) {
        Parser parser;
        parser.header_limit(headBytes);
        parser.body_limit(bodyBytes);
        // One step at a time: an eager parser goes on past a length it refuses, and reserves it.
        parser.eager(false);
        _fill(parser, deadline);
        const int status = static_cast<int>(parser.get().result_int());
        if (status / 100 == 1) continue;
        const bool keepsAlive = parser.get().keep_alive() && !parser.need_eof() && _pending.empty();
        return {status, keepsAlive, std::move(parser.get().body())};
    }
    throw HttpAnswerError("the listener sends nothing but interim answers");
}

}  // namespace cimhost
