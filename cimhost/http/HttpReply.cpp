#include "cimhost/http/HttpReply.h"

#include "cimhost/http/HttpDate.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <charconv>

namespace cimhost {
namespace {

struct Phrase {
    int status;
    std::string_view text;
};

constexpr auto phrases = std::to_array<Phrase>({
    {200, "OK"},
    {204, "No Content"},
    {304, "Not Modified"},
    {400, "Bad Request"},
    {401, "Unauthorized"},
    {403, "Forbidden"},
    {404, "Not Found"},
    {405, "Method Not Allowed"},
    {406, "Not Acceptable"},
    {408, "Request Timeout"},
    {411, "Length Required"},
    {413, "Content Too Large"},
    {414, "URI Too Long"},
    {415, "Unsupported Media Type"},
    {417, "Expectation Failed"},
    {421, "Misdirected Request"},
    {431, "Request Header Fields Too Large"},
    {500, "Internal Server Error"},
    {501, "Not Implemented"},
    {502, "Bad Gateway"},
    {503, "Service Unavailable"},
    {504, "Gateway Timeout"},
    {505, "HTTP Version Not Supported"},
});

char withoutControl(char character) noexcept {
    const auto byte = static_cast<unsigned char>(character);
    return byte < 0x20 || byte == 0x7F ? ' ' : character;
}

/// What stands around a chunk; nothing when the chunk is empty, which would end the body.
class ChunkFrame {
public:
    explicit ChunkFrame(std::size_t size) {
        if (size == 0) return;
        char* position = std::to_chars(_line.data(), _line.data() + _line.size() - 2, size, 16).ptr;
        position = std::copy_n("\r\n", 2, position);
        _size = static_cast<std::size_t>(position - _line.data());
    }

    std::string_view begin() const noexcept { return {_line.data(), _size}; }
    std::string_view end() const noexcept { return _size == 0 ? "" : "\r\n"; }

private:
    std::array<char, 20> _line;
    std::size_t _size = 0;
};

bool hasBody(int status) noexcept { return status != 204 && status != 304; }

}  // namespace

HttpReply::HttpReply(Stream& stream, SpoolStore& store, Manner manner)
    : _stream(stream), _store(store), _manner(manner), _spool(store) {}

void HttpReply::addHeader(HttpHeader header) { _appendLine(_headers, header); }

void HttpReply::setTrailer(HttpHeader trailer) { _appendLine(_trailers, trailer); }

void HttpReply::_appendLine(std::string& lines, HttpHeader header) {
    lines.append(header.name).append(": ");
    std::transform(header.value.begin(), header.value.end(), std::back_inserter(lines),
                   withoutControl);
    lines.append("\r\n");
}

void HttpReply::write(std::string_view text) {
    assert(!_finished);
    while (text.size() > bufferBytes - _body.size()) {
        const std::size_t fits = bufferBytes - _body.size();
        _writeChunk(text.substr(0, fits));
        text.remove_prefix(fits);
    }
    _body.append(text);
}

bool HttpReply::restart() {
    if (_sentBytes > 0) return false;
    _spool.clear();
    _head.clear();
    _headers.clear();
    _body.clear();
    _status = 200;
    _isStreamed = _isCut = false;
    return true;
}

void HttpReply::flush() {
    assert(!_finished);
    _checkHurry();
    if (_isCut) throw StreamError(StreamError::Kind::lost, "the reply was cut off already");
    HttpPresence* const presence = _manner.presence;
    if (presence) presence->sendingSince = Clock::now().time_since_epoch().count();
    _beginStream();
    _sendSpooled();
    const ChunkFrame frame(_isChunked() ? _body.size() : 0);
    _send({_head, frame.begin(), _body, frame.end()});
    _head.clear();
    _body.clear();
    if (presence) presence->waitingSince = presence->sendingSince = 0;
}

bool HttpReply::keepOpen() {
    if (_openReply || !_manner.openReplies) return true;
    _openReply.emplace(*_manner.openReplies);
    if (_openReply->grow(1)) return true;
    _openReply.reset();
    return false;
}

bool HttpReply::isEnding() const {
    return (_manner.presence && _manner.presence->endStatus != 0) || _stream.hasPeerEnded();
}

void HttpReply::refuse(int status, std::initializer_list<HttpHeader> headers,
                       std::string_view words) {
    assert(!_finished);
    [[maybe_unused]] const bool isFresh = restart();
    assert(isFresh);
    for (const HttpHeader& header : headers) addHeader(header);
    if (!words.empty()) addHeader({"Content-Type", "text/plain; charset=utf-8"});
    _body = words;
    _status = status;
}

void HttpReply::finish() {
    assert(!_finished);
    _finished = true;
    if (_isCut && _sentBytes == 0) {
        throw StreamError(StreamError::Kind::lost, "the reply was not started anew");
    }
    if (_isStreamed) return _endStream();
    _beginHead(_status);
    if (hasBody(_status)) _appendLine(_head, {"Content-Length", std::to_string(_body.size())});
    _head.append("\r\n");
    _send({_head, _hasBody() ? std::string_view(_body) : std::string_view{}});
}

bool HttpReply::_hasBody() const noexcept { return !_manner.isForHead && hasBody(_status); }

bool HttpReply::_isChunked() const noexcept { return _manner.isHttp11 && _hasBody(); }

/// From now on the reply leaves piece by piece; what has been held back goes with the first.
void HttpReply::_beginStream() {
    if (!_hasBody()) _body.clear();
    if (_isStreamed) return;
    _isStreamed = true;
    if (!_manner.isHttp11) _manner.keepAlive = false;
    _beginHead(_status);
    if (_manner.isHttp11 && hasBody(_status)) {
        _appendLine(_head, {"Transfer-Encoding", "chunked"});
        if (!_announced.empty()) _appendLine(_head, {"Trailer", _announced});
    }
    _head.append("\r\n");
}

/// The buffer, and more behind it, as the next piece.
void HttpReply::_writeChunk(std::string_view more) {
    _beginStream();
    if (!_hasBody()) more = {};
    const ChunkFrame frame(_isChunked() ? _body.size() + more.size() : 0);
    _pass({_head, frame.begin(), _body, more, frame.end()});
    _head.clear();
    _body.clear();
}

void HttpReply::_endStream() {
    if (!_spool.isEmpty()) {
        _body.shrink_to_fit();
        _store.noteWaiting(_sentBytes + _spool.size());
    }
    _sendSpooled();
    if (_isCut || !_hasBody()) _body.clear();
    if (!_isChunked()) return _send({_body});
    const ChunkFrame frame(_body.size());
    _send({frame.begin(), _body, frame.end(), "0\r\n", _trailers, "\r\n"});
}

void HttpReply::_checkHurry() const {
    if (!_manner.presence || !_manner.presence->isHurried) return;
    throw StreamError(StreamError::Kind::lost, "the server ends");
}

void HttpReply::_beginHead(int status) {
    _head.reserve(256 + _headers.size());
    _head.append("HTTP/1.1 ").append(std::to_string(status)).append(" ");
    _head.append(reasonPhrase(status)).append("\r\nDate: ").append(httpDate()).append("\r\n");
    _head.append(_headers);
    if (!_manner.keepAlive) {
        _head.append("Connection: close\r\n");
    } else if (!_manner.isHttp11) {
        _head.append("Connection: keep-alive\r\n");
    }
}

/// Hands over what the client takes at once; the rest has to wait, and we do not.
void HttpReply::_pass(std::initializer_list<std::string_view> pieces) {
    if (_isCut) throw SpoolError(SpoolError::Kind::full, "the reply was cut off already");
    _checkHurry();
    const std::span<const std::string_view> all(pieces.begin(), pieces.size());
    std::size_t taken = 0;
    try {
        _passSpooled();
        if (_spool.isEmpty()) taken = _stream.trySend(all);
        _sentBytes += taken;
        _spool.append(all, taken);
    } catch (const SpoolError&) {
        _isCut = true;
        // A chunk that has begun to leave must be whole, or the trailers would be read as its text.
        if (taken > 0) _unspooled = joined(all, taken);
        throw;
    }
}

void HttpReply::_passSpooled() {
    while (!_spool.isEmpty()) {
        const std::string_view piece = _spool.front();
        const std::size_t taken = _stream.trySend({&piece, 1});
        _sentBytes += taken;
        _spool.pop(taken);
        if (taken < piece.size()) return;
    }
}

/// At the client's pace.
void HttpReply::_sendSpooled() try {
    Clock::time_point deadline;
    for (std::size_t left = 0; !_spool.isEmpty();) {
        if (left == 0) {
            deadline = Clock::now() + _manner.sendTime;
            left = bufferBytes;
        }
        const std::string_view piece = _spool.front().substr(0, left);
        _send({piece}, deadline);
        _spool.pop(piece.size());
        left -= piece.size();
    }
    if (!_unspooled.empty()) _send({_unspooled});
} catch (const SpoolError& error) {
    // The client must not take half a reply for a whole one.
    throw StreamError(StreamError::Kind::lost, error.what());
}

void HttpReply::_send(std::initializer_list<std::string_view> pieces) {
    _send(pieces, Clock::now() + _manner.sendTime);
}

void HttpReply::_send(std::initializer_list<std::string_view> pieces, Clock::time_point deadline) {
    for (const std::string_view piece : pieces) _sentBytes += piece.size();
    HttpPresence* const presence = _manner.presence;
    if (presence) presence->waitingSince = Clock::now().time_since_epoch().count();
    _stream.send({pieces.begin(), pieces.size()}, deadline);
}

std::string_view reasonPhrase(int status) noexcept {
    const auto* const row = std::ranges::find(phrases, status, &Phrase::status);
    return row == phrases.end() ? std::string_view("Error") : row->text;
}

}  // namespace cimhost
