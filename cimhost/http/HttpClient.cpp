#include "cimhost/http/HttpClient.h"

#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>
#include <poll.h>

#include <algorithm>
#include <array>
#include <limits>

namespace cimhost {
namespace {

namespace http = boost::beast::http;
using boost::beast::error_code;
using boost::beast::string_view;

constexpr std::size_t blockBytes = 64 * 1024;
constexpr int mostInterimHeads = 8;

std::string_view viewOf(string_view text) noexcept { return {text.data(), text.size()}; }

/// Of an answer with status 200 the body.
class GoodBody final : public HttpAnswerTaker {
public:
    explicit GoodBody(const std::function<void(std::string_view)>& take) : _take(take) {}

    void head(const HttpAnswerHead& answer) override { _isGood = answer.status == 200; }
    void body(std::string_view piece) override {
        if (_isGood) _take(piece);
    }

private:
    const std::function<void(std::string_view)>& _take;
    bool _isGood = false;
};

}  // namespace

std::optional<std::string_view> HttpAnswerHead::field(std::string_view name) const noexcept {
    const auto found = std::ranges::find_if(
        fields, [name](const Field& each) { return equalTokens(each.name, name); });
    if (found == fields.end()) return std::nullopt;
    return found->value;
}

/// What Beast finds in one answer, put into ours.
class HttpClient::Parser final : public http::basic_parser<false> {
public:
    explicit Parser(HttpAnswerTaker& taker) : _taker(taker) {
        header_limit(headBytes);
        body_limit(std::numeric_limits<std::uint64_t>::max());
        eager(true);
    }

    HttpAnswerHead answer;

    bool isInterim() const noexcept { return answer.status / 100 == 1; }

private:
    void on_response_impl(int status, string_view, int, error_code&) override {
        answer.status = status;
    }

    void on_field_impl(http::field, string_view name, string_view value,
                       error_code& error) override {
        _fieldBytes += name.size() + value.size();
        if (_fieldBytes > headBytes) {
            error = http::error::header_limit;
            return;
        }
        answer.fields.push_back({std::string(viewOf(name)), std::string(viewOf(value))});
    }

    void on_header_impl(error_code&) override {
        if (!isInterim()) _taker.head(answer);
    }
    void on_body_init_impl(const boost::optional<std::uint64_t>&, error_code&) override {}

    std::size_t on_body_impl(string_view bytes, error_code&) override {
        _taker.body(viewOf(bytes));
        return bytes.size();
    }

    void on_chunk_header_impl(std::uint64_t, string_view, error_code&) override {}

    std::size_t on_chunk_body_impl(std::uint64_t, string_view bytes, error_code& error) override {
        return on_body_impl(bytes, error);
    }

    void on_finish_impl(error_code&) override {}

    // From the request half of the base; never called for answers.
    void on_request_impl(http::verb, string_view, string_view, int, error_code&) override {}

    HttpAnswerTaker& _taker;
    std::size_t _fieldBytes = 0;
};

HttpAnswerHead HttpClient::post(std::string_view target,
                                const std::vector<HttpAnswerHead::Field>& headers,
                                std::string_view body,
                                const std::function<void(std::string_view)>& take,
                                const HttpPatience& patience) {
    GoodBody taker(take);
    return post(target, headers, body, taker, patience);
}

HttpAnswerHead HttpClient::post(std::string_view target,
                                const std::vector<HttpAnswerHead::Field>& headers,
                                std::string_view body, HttpAnswerTaker& taker,
                                const HttpPatience& patience) {
    // Good again once the whole answer is there.
    _isGood = _hasAnswered = false;
    std::string head = "POST " + std::string(target) + " HTTP/1.1\r\n";
    for (const HttpAnswerHead::Field& each : headers) {
        head.append(each.name).append(": ").append(each.value).append("\r\n");
    }
    head.append("Content-Length: ").append(std::to_string(body.size())).append("\r\n\r\n");
    _send(head, body, patience);
    for (int i = 0; i < mostInterimHeads; ++i) {
        Parser parser(taker);
        _receive(parser, patience);
        if (parser.isInterim()) continue;
        _isGood = parser.keep_alive() && !parser.need_eof() && _pending.empty();
        return std::move(parser.answer);
    }
    throw HttpClientError("the server sends nothing but interim answers");
}

void HttpClient::_send(std::string_view head, std::string_view body, const HttpPatience& patience) {
    const auto deadline = [&] {
        const Clock::time_point now = Clock::now();
        return std::max(patience(now), now + _sendTime);
    };
    _stream().establish(deadline());
    for (std::string_view rest = body; !head.empty() || !rest.empty();) {
        const std::string_view block = rest.substr(0, blockBytes);
        const std::array<std::string_view, 2> pieces{head, block};
        _stream().send(pieces, deadline());
        rest.remove_prefix(block.size());
        head = {};
    }
}

void HttpClient::_receive(Parser& parser, const HttpPatience& patience) {
    const auto block = std::make_unique_for_overwrite<char[]>(blockBytes);
    while (!parser.is_done()) {
        error_code error;
        std::size_t used = 0;
        if (!_pending.empty()) {
            used = parser.put(boost::asio::buffer(_pending), error);
            _pending.erase(0, used);
        }
        if (error && error != http::error::need_more) {
            throw HttpClientError("the answer is no HTTP: " + error.message());
        }
        if (parser.is_done() || (used != 0 && !_pending.empty())) continue;
        if (_pending.size() > headBytes + blockBytes) {
            throw HttpClientError("the answer is no HTTP: a line is too long");
        }
        const std::size_t count = _receiveSome({block.get(), blockBytes}, patience);
        if (count == 0) {
            if (!parser.is_header_done() || !parser.need_eof()) {
                throw StreamError(StreamError::Kind::lost, "the connection ended in an answer");
            }
            parser.put_eof(error);
            if (error) throw StreamError(StreamError::Kind::lost, "the answer was cut off");
            return;
        }
        _pending.append(block.get(), count);
    }
}

std::size_t HttpClient::_receiveSome(std::span<char> buffer, const HttpPatience& patience) {
    const Clock::time_point begin = Clock::now();
    for (Clock::time_point end = patience(begin);;) {
        try {
            const std::size_t count = _stream().receive(buffer, end);
            _hasAnswered = _hasAnswered || count > 0;
            return count;
        } catch (const StreamError& error) {
            if (error.kind() != StreamError::Kind::timeout) throw;
            end = patience(begin);
            if (end <= Clock::now()) throw;
        }
    }
}

bool HttpClient::isReusable() const noexcept {
    pollfd entry{_socket.get(), POLLIN, 0};
    return _isGood && !(_tls && _tls->hasPending()) && poll(&entry, 1, 0) == 0;
}

}  // namespace cimhost
