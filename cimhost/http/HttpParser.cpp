#include "cimhost/http/HttpParser.h"

#include <boost/beast/http/basic_parser.hpp>
#include <boost/beast/http/error.hpp>

#include <limits>

namespace cimhost {
namespace {

namespace http = boost::beast::http;
using boost::beast::error_code;
using boost::beast::string_view;

std::string_view toStandard(string_view text) noexcept { return {text.data(), text.size()}; }

}  // namespace

/// What Beast finds in one request, put into ours. Beast sees a head only once it is complete.
class HttpParser::Reader final : public http::basic_parser<true> {
public:
    Reader(HttpRequest& request, const HttpLimits& limits, const bool& discardsBody)
        : _request(request), _limits(limits), _discardsBody(discardsBody) {
        header_limit(std::numeric_limits<std::uint32_t>::max());  // HttpHead keeps the limits
        body_limit(limits.bodyBytes);
    }

    void readHead(std::string_view head, error_code& error) {
        put(boost::asio::const_buffer(head.data(), head.size()), error);
    }

    std::size_t readBody(std::string_view bytes, error_code& error) {
        const std::size_t taken = put(boost::asio::const_buffer(bytes.data(), bytes.size()), error);
        _takenBytes += taken;
        return taken;
    }

    /// Ends the parsing with this status.
    void fail(int status, error_code& error) noexcept {
        _status = status;
        error = http::error::bad_value;
    }

    int statusOf(const error_code& error) const noexcept {
        if (_status != 0) return _status;
        return error == http::error::body_limit ? 413 : 400;
    }

    std::size_t framingBytes() const noexcept { return _takenBytes - _bodyBytes; }

private:
    void on_request_impl(http::verb, string_view method, string_view target, int version,
                         error_code&) override {
        _request.method = toStandard(method);
        _request.target = toStandard(target);
        _request.isHttp11 = version == 11;
    }

    void on_field_impl(http::field field, string_view name, string_view value,
                       error_code& error) override {
        if (_inBody) return _countTrailer(error);
        if (field == http::field::transfer_encoding) _checkCoding(value, error);
        if (field == http::field::content_length) _checkLength(value, error);
        _request.fields.push_back({toStandard(name), toStandard(value)});
    }

    /// One list member or two fields that agree are legal, yet no client of ours writes them.
    void _checkLength(string_view value, error_code& error) {
        if (_request.header("Content-Length") || value.find(',') != value.npos) fail(400, error);
    }

    void _checkCoding(string_view value, error_code& error) {
        if (_request.header("Transfer-Encoding") || !_request.isHttp11) {
            fail(400, error);
        } else if (!equalTokens(toStandard(value), "chunked")) {
            fail(501, error);
        }
    }

    void _countTrailer(error_code& error) {
        if (++_trailerCount > _limits.fieldCount) fail(431, error);
    }

    void on_header_impl(error_code&) override {
        _request.keepAlive = keep_alive();
        _request.isChunked = chunked();
        if (const auto length = content_length()) _request.contentLength = *length;
        // Beast charges a chunk anew whenever it reads its line anew for want of bytes.
        if (_request.isChunked) body_limit(boost::none);
        _inBody = true;
    }

    void on_body_init_impl(const boost::optional<std::uint64_t>&, error_code&) override {}

    std::size_t on_body_impl(string_view bytes, error_code&) override {
        _bodyBytes += bytes.size();
        if (_discardsBody) return bytes.size();
        // Reserved at once, and paid for only page by page as it comes.
        if (_request.body.empty()) _request.body.reserve(_request.contentLength.value_or(0));
        _request.body.append(bytes.data(), bytes.size());
        return bytes.size();
    }

    void on_chunk_header_impl(std::uint64_t size, string_view, error_code& error) override {
        if (size > _limits.bodyBytes - _chunkBytes) return fail(413, error);
        _chunkBytes += size;
    }

    std::size_t on_chunk_body_impl(std::uint64_t, string_view bytes, error_code& error) override {
        return on_body_impl(bytes, error);
    }

    void on_finish_impl(error_code&) override {}

    // From the response half of the base; never called for requests.
    void on_response_impl(int, string_view, int, error_code&) override {}

    HttpRequest& _request;
    const HttpLimits& _limits;
    const bool& _discardsBody;
    std::size_t _bodyBytes = 0;
    std::size_t _takenBytes = 0;
    std::uint64_t _chunkBytes = 0;  ///< announced by the chunks so far
    std::size_t _trailerCount = 0;
    int _status = 0;
    bool _inBody = false;
};

HttpParser::HttpParser(const HttpLimits& limits) : _limits(limits), _head(limits) {}

HttpParser::~HttpParser() = default;

std::size_t HttpParser::feed(std::string_view bytes) {
    switch (_state) {
        case State::head: return _feedHead(bytes);
        case State::headComplete:
        case State::body: return _feedBody(bytes);
        case State::complete:
        case State::refused: break;
    }
    return 0;
}

std::size_t HttpParser::_feedHead(std::string_view bytes) {
    const std::size_t used = _head.feed(bytes);
    if (_head.refusal() != 0) {
        _refuse(_head.refusal());
    } else if (_head.isComplete()) {
        _readHead();
    }
    return used;
}

void HttpParser::_readHead() {
    _reader = std::make_unique<Reader>(_request, _limits, _discardsBody);
    error_code error;
    _reader->readHead(_head.text(), error);
    if (error) {
        _refuse(_reader->statusOf(error));
    } else {
        _state = State::headComplete;
    }
}

std::size_t HttpParser::_feedBody(std::string_view bytes) {
    _state = State::body;
    // A window keeps the limit of a chunk's line the same however the bytes were cut on their way.
    const std::size_t window = _request.isChunked ? _limits.chunkLineBytes : bytes.size();
    std::size_t used = 0;
    error_code error;
    while (!_reader->is_done() && used < bytes.size() && !error) {
        const std::string_view piece = bytes.substr(used, window);
        const std::size_t taken = _reader->readBody(piece, error);
        used += taken;
        if (error == http::error::need_more && taken == 0 && piece.size() == window) {
            _reader->fail(400, error);
        }
        if (_reader->framingBytes() > _limits.framingBytes) _reader->fail(413, error);
    }
    if (_reader->is_done()) {
        _state = State::complete;
    } else if (error && error != http::error::need_more) {
        _refuse(_reader->statusOf(error));
    }
    return used;
}

void HttpParser::_refuse(int status) noexcept {
    _state = State::refused;
    _refusal = status;
}

void HttpParser::releaseBody() {
    constexpr std::size_t keptBytes = 64 * 1024;
    _request.body.clear();
    if (_request.body.capacity() > keptBytes) std::string().swap(_request.body);
}

void HttpParser::clear() {
    _head.clear();
    _reader.reset();
    _request.method = _request.target = _request.principal = {};
    _request.isHttp11 = true;
    _request.isChunked = false;
    _request.contentLength.reset();
    _request.fields.clear();
    releaseBody();
    _state = State::head;
    _refusal = 0;
    _discardsBody = false;
}

}  // namespace cimhost
