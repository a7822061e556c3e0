#include "cimhost/http/HttpConnection.h"

#include <cstring>

namespace cimhost {
namespace {

/// A refused request's body is read past, to keep the connection, if it is no longer than this.
constexpr std::uint64_t skippedBodyBytes = 64 * 1024;

/// Of each body so much is not charged: requests as they mostly are come through whatever long
/// ones there are.
constexpr std::uint64_t unchargedBodyBytes = 64 * 1024;

bool canSkipBody(const HttpRequest& request) noexcept {
    return !request.isChunked && request.contentLength.value_or(0) <= skippedBodyBytes &&
           !wantsContinue(request);
}

/// Statuses after which the client and we may differ about where its next request begins.
bool losesTrack(int status) noexcept { return status == 400 || status == 411; }

}  // namespace

HttpConnection::HttpConnection(Stream& stream, const HttpServices& services, HttpBudgets& budgets,
                               const HttpAddresses& addresses, HttpPresence& presence)
    : _stream(stream),
      _services(services),
      _limits(services.limits),
      _budgets(budgets),
      _addresses(addresses),
      _presence(presence),
      _bodyShare(budgets.bodies),
      _parser(_limits),
      _buffer(std::make_unique_for_overwrite<char[]>(_bufferBytes)) {
    _parser.request().localAddress = addresses.local;
}

void HttpConnection::serve() noexcept try {
    _stream.establish(Clock::now() + _limits.requestTime);
    while (_serveRequest()) {
    }
} catch (const std::exception&) {
    // The client is gone, or memory is: either way this connection ends and the others go on.
}

void HttpConnection::refuse(int status) noexcept try {
    _stream.establish(Clock::now() + _limits.lingerTime);
    _endHere(status);
    _answer();
} catch (const std::exception&) {
    // As above.
}

bool HttpConnection::_serveRequest() {
    _parser.clear();
    _bodyShare.clear();
    _refusal = 0;
    _bodyBytes = 0;
    _waitBegin = Clock::now();
    _presence.sendingSince = 0;
    _presence.waitingSince = _waitBegin.time_since_epoch().count();
    if (!_receiveRequest()) return false;
    _presence.waitingSince = 0;
    return _answer();
}

/// False when the connection ended with no request begun.
bool HttpConnection::_receiveRequest() {
    for (;;) {
        _feedParser();
        if (_closes) return true;
        switch (_parser.state()) {
            case HttpParser::State::complete: return true;
            case HttpParser::State::refused: _endHere(_parser.refusal()); return true;
            case HttpParser::State::headComplete:
                _judgeHead();
                if (_closes) return true;
                _feedParser();
                if (_closes || _parser.state() == HttpParser::State::complete) return true;
                break;
            case HttpParser::State::head:
            case HttpParser::State::body: break;
        }
        if (_parser.state() != HttpParser::State::refused && !_receiveMore()) return _closes;
    }
}

void HttpConnection::_feedParser() {
    if (_begin < _end && !_parser.hasBegun()) _firstByte = Clock::now();
    const bool inBody = _parser.state() != HttpParser::State::head;
    const std::size_t used = _parser.feed({_buffer.get() + _begin, _end - _begin});
    _begin += used;
    if (!inBody) return;
    _bodyBytes += used;
    if (_refusal == 0 && !_chargeBody()) {
        _releaseBody();
        _endHere(503);
    }
}

/// False when there is no room for what has come of the body.
bool HttpConnection::_chargeBody() {
    const std::uint64_t charge = std::max(_bodyBytes, unchargedBodyBytes) - unchargedBodyBytes;
    return charge <= _bodyShare.size() || _bodyShare.grow(charge - _bodyShare.size());
}

void HttpConnection::_releaseBody() {
    _parser.releaseBody();
    _bodyShare.clear();
}

Clock::time_point HttpConnection::_deadline() const {
    if (!_parser.hasBegun()) return _waitBegin + _limits.idleTime;
    return _firstByte + _limits.requestTime + std::chrono::seconds(_bodyBytes / _limits.bodyRate);
}

/// False when no more will come; then the request, if one has begun, is refused.
bool HttpConnection::_receiveMore() {
    std::memmove(_buffer.get(), _buffer.get() + _begin, _end - _begin);
    _end -= _begin;
    _begin = 0;
    try {
        const std::size_t count =
            _stream.receive({_buffer.get() + _end, _bufferBytes - _end}, _deadline());
        _end += count;
        if (count > 0) return true;
        const int status = _presence.endStatus;
        if (_parser.hasBegun()) _endHere(status == 0 ? 400 : status);
    } catch (const StreamError& error) {
        if (error.kind() != StreamError::Kind::timeout) throw;
        if (_parser.hasBegun()) _endHere(408);
    }
    return false;
}

void HttpConnection::_judgeHead() {
    HttpRequest& request = _parser.request();
    int status = refusalOf(request, _rules());
    if (status == 0 && _services.authenticator != nullptr) {
        const std::string_view proof = request.header("Authorization").value_or(std::string_view{});
        const auto user = _services.authenticator->authenticate(proof, _addresses.peer);
        request.principal = user.value_or(std::string_view{});
        if (request.principal.empty()) status = user ? 401 : 503;
    }
    if (status == 0) {
        constexpr std::string_view proceed = "HTTP/1.1 100 Continue\r\n\r\n";
        if (_begin == _end && wantsContinue(request)) {
            _stream.send({&proceed, 1}, Clock::now() + _limits.replyTime);
        }
        return;
    }
    _refusal = status;
    _parser.discardBody();
    if (losesTrack(status) || !canSkipBody(request)) _endHere(status);
}

HttpRules HttpConnection::_rules() const noexcept {
    return {_services.pages != nullptr, _services.usesTls, _services.names};
}

void HttpConnection::_endHere(int status) {
    if (_refusal == 0) _refusal = status;
    _closes = true;
}

/// False when the connection is to end.
bool HttpConnection::_answer() {
    const HttpRequest& request = _parser.request();
    const bool keepAlive = !_closes && request.keepAlive && _presence.endStatus == 0;
    HttpReply reply(_stream, _budgets.spool,
                    {request.isHttp11, keepAlive, _limits.replyTime, &_presence,
                     request.method == "HEAD", &_budgets.openReplies});
    const Clock::time_point start = Clock::now();
    try {
        _fill(reply);
    } catch (const StreamError&) {
        if (reply.notes().outcome.empty()) reply.notes().outcome = "lost";
        _log(reply, start);
        throw;
    }
    _log(reply, start);
    if (!reply.keepsAlive()) _linger();
    return reply.keepsAlive();
}

void HttpConnection::_fill(HttpReply& reply) {
    if (_refusal != 0) {
        cimhost::refuse(reply, _refusal, _rules(), _services.handler.about());
    } else {
        _callHandler(reply);
        _releaseBody();
    }
    _presence.sendingSince = Clock::now().time_since_epoch().count();
    reply.finish();
}

void HttpConnection::_callHandler(HttpReply& reply) {
    std::string failure;
    try {
        const bool isPost = _parser.request().method == "POST";
        HttpHandler& handler = isPost ? _services.handler : *_services.pages;
        handler.handle(_parser.request(), reply);
        return;
    } catch (const StreamError&) {
        throw;
    } catch (const std::exception& error) {
        failure = error.what();
    } catch (...) {
        failure = "unknown failure";
    }
    reply.notes().outcome = failure;
    // Broken on purpose: the client must not take half a reply for a whole one.
    if (!reply.restart()) throw StreamError(StreamError::Kind::lost, failure);
    reply.refuse(500);
    reply.closeAfterwards();
}

void HttpConnection::_log(HttpReply& reply, Clock::time_point start) {
    const RequestNotes& notes = reply.notes();
    if (!_services.accessLog && !notes.atEnd) return;
    const HttpRequest& request = _parser.request();
    AccessRecord record;
    record.peer = _addresses.peer;
    record.user = request.principal;
    record.operation = notes.operation.empty() ? request.method : notes.operation;
    record.object = notes.operation.empty() ? request.target : notes.object;
    record.outcome = notes.outcome;
    record.status = reply.status();
    record.bytes = reply.sentBytes();
    record.duration = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - start);
    if (_services.accessLog) _services.accessLog->write(record);
    if (notes.atEnd) notes.atEnd(record);
}

/// Reads past what the client still sends: bytes that meet a closed socket would make the system
/// throw away a reply that the client has not read yet.
void HttpConnection::_linger() {
    _presence.waitingSince = Clock::now().time_since_epoch().count();
    _stream.endSending();
    const Clock::time_point deadline = Clock::now() + _limits.lingerTime;
    while (_stream.receive({_buffer.get(), _bufferBytes}, deadline) > 0) {
    }
}

}  // namespace cimhost
