#include "cimhost/server/ConsoleProxy.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/cimxml/Message.h"
#include "cimhost/cimxml/XmlError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/server/events/RequestEvent.h"

#include <algorithm>
#include <array>
#include <exception>
#include <optional>
#include <vector>

namespace cimhost {
namespace {

constexpr std::string_view aboutConsole =
    "This is 'cimhost console': it shows another object manager to a browser, and passes on "
    "CIM-XML requests that are POSTed with the headers CIMOperation, CIMMethod and CIMObject; see "
    "docs/cimhost.md.\n";

/// How often the client is looked after while the target is silent.
constexpr std::chrono::seconds lookTime{1};
/// An error stands at the beginning of a reply.
constexpr std::size_t beginningBytes = 1024;

constexpr auto requestHeaders = std::to_array<std::string_view>(
    {"CIMOperation", "CIMMethod", "CIMObject", "CIMProtocolVersion", "Content-Type",
     "Content-Language", "Authorization", "Accept", "Accept-Language"});

/// Of an answer, trailers included. No other, lest the target set cookies or let in other sites.
constexpr auto answerHeaders = std::to_array<std::string_view>(
    {"Content-Type", "Content-Language", "Cache-Control", "WWW-Authenticate", "Retry-After",
     "CIMOperation", "CIMProtocolVersion", "CIMError", "CIMStatusCode", "CIMStatusCodeDescription",
     "PGErrorDetail"});

constexpr auto readingOperations = std::to_array<std::string_view>(
    {"GetInstance", "GetClass", "GetProperty", "GetQualifier", "EnumerateInstances",
     "EnumerateInstanceNames", "EnumerateClasses", "EnumerateClassNames", "EnumerateQualifiers",
     "Associators", "AssociatorNames", "References", "ReferenceNames", "ExecQuery"});

/// An operation that changes nothing. A method may have the same name, yet is that of a class.
bool isReading(const HttpRequest& request) {
    const std::string object = percentDecode(request.header("CIMObject").value_or(""));
    return object.find_first_of(":.") == std::string::npos &&
           containsName(readingOperations, percentDecode(request.header("CIMMethod").value_or("")));
}

std::vector<HttpAnswerHead::Field> headersFor(const HttpRequest& request) {
    std::vector<HttpAnswerHead::Field> headers;
    for (const std::string_view name : requestHeaders) {
        if (const auto value = request.header(name)) {
            headers.push_back({std::string(name), std::string(*value)});
        }
    }
    return headers;
}

/// The class that the message is about; empty for what is no message.
std::string classNamedIn(const HttpRequest& request) {
    try {
        const XmlDocument document(request.body, {Tag::cim});
        const CimXmlRequest message{
            [&request](std::string_view name) { return request.header(name); },
            request.body,
            {},
            {}};
        return std::string(classAskedFor(readMessage(message, document)));
    } catch (const XmlError&) {
        return {};
    } catch (const Refusal&) {
        return {};
    }
}

/// The code of an error that a reply begins with; else empty.
std::string_view errorCodeIn(std::string_view beginning) noexcept {
    constexpr std::string_view attribute = " CODE=\"";
    const std::size_t error = beginning.find("<ERROR ");
    if (error == std::string_view::npos) return {};
    const std::size_t at = beginning.find(attribute, error);
    if (at == std::string_view::npos) return {};
    const std::string_view code = beginning.substr(at + attribute.size());
    return code.substr(0, std::min<std::size_t>(code.find('"'), 8));
}

/// Hands an answer on. What the client's side throws is kept, to be told from the target's failure.
class PassedAnswer final : public HttpAnswerTaker {
public:
    explicit PassedAnswer(HttpReply& reply) : _reply(reply) {}

    void head(const HttpAnswerHead& answer) override {
        if (answer.status < 200 || answer.status > 599) {
            throw HttpClientError("its status is " + std::to_string(answer.status));
        }
        _reply.setStatus(answer.status);
        for (const HttpAnswerHead::Field& each : answer.fields) {
            if (containsName(answerHeaders, each.name)) _reply.addHeader({each.name, each.value});
        }
        _reply.addHeader({"X-Content-Type-Options", "nosniff"});
        _reply.notes().outcome = answer.field("CIMError").value_or("");
        // One that tells its length and fits a buffer leaves with its length, too.
        _isStreamed = !answer.field("Content-Length");
        _trailers = answer.field("Trailer").value_or("");
        _reply.announceTrailers(_trailers);
        _headFields = answer.fields.size();
    }

    void body(std::string_view piece) override {
        if (_beginning.size() < beginningBytes) _beginning += piece.substr(0, beginningBytes);
        _size += piece.size();
        _isStreamed = _isStreamed || _size > HttpReply::bufferBytes;
        try {
            _reply.write(piece);
            // At the client's pace: nothing piles up here, and the target waits.
            if (_isStreamed) _reply.flush();
        } catch (...) {
            _failure = std::current_exception();
            throw;
        }
    }

    void end(const HttpAnswerHead& answer) {
        for (std::size_t i = _headFields; i < answer.fields.size(); ++i) {
            const HttpAnswerHead::Field& each = answer.fields[i];
            if (containsName(answerHeaders, each.name)) _reply.setTrailer({each.name, each.value});
        }
        std::string& outcome = _reply.notes().outcome;
        if (outcome.empty()) outcome = answer.field("CIMStatusCode").value_or("");
        if (outcome.empty()) outcome = errorCodeIn(_beginning);
    }

    /// When to stop waiting for a target that has been silent since then.
    Clock::time_point patience(Clock::time_point silentSince, std::chrono::milliseconds silence) {
        if (_reply.isEnding()) {
            const StreamError gone(StreamError::Kind::lost, "the client is gone");
            _failure = std::make_exception_ptr(gone);
            throw gone;
        }
        return std::min(silentSince + silence, Clock::now() + lookTime);
    }

    const std::exception_ptr& failure() const noexcept { return _failure; }

private:
    HttpReply& _reply;
    std::string _trailers;
    std::string _beginning;
    std::size_t _size = 0;
    std::size_t _headFields = 0;
    bool _isStreamed = false;
    std::exception_ptr _failure;
};

}  // namespace

std::string_view ConsoleProxy::about() const noexcept { return aboutConsole; }

void ConsoleProxy::handle(const HttpRequest& request, HttpReply& reply) {
    if (request.header("CIMExport")) {
        if (_exports) return _exports->handle(request, reply);
        return reply.refuse(403, {}, "Indications are not taken here; see --listen.\n");
    }
    reply.notes().operation = request.header("CIMMethod").value_or("");
    reply.notes().object = request.header("CIMObject").value_or("");
    if (!request.header("CIMOperation")) return reply.refuse(400, {}, aboutConsole);
    _tellEnd(request, reply);
    _pass(request, reply);
}

void ConsoleProxy::_tellEnd(const HttpRequest& request, HttpReply& reply) {
    const std::uint64_t number = ++_requests;
    if (!_feed.isWatched()) return;
    reply.notes().atEnd = [this, event = RequestEvent{number, classNamedIn(request), {}}](
                              const AccessRecord& record) { tell(_feed, event, record); };
}

void ConsoleProxy::_pass(const HttpRequest& request, HttpReply& reply) {
    PassedAnswer answer(reply);
    const HttpPatience patience = [&](Clock::time_point silentSince) {
        return answer.patience(silentSince, _settings.silence);
    };
    std::optional<std::string> problem;
    int status = 502;
    try {
        const HttpAnswerHead head = _upstream.post(
            {_settings.path.empty() ? request.path() : _settings.path, headersFor(request),
             request.body, request.header("Authorization").value_or(""), isReading(request)},
            answer, patience);
        return answer.end(head);
    } catch (const TlsTrustError& error) {
        problem = std::string(error.what()) + " (--ca FILE names whom to trust)";
    } catch (const StreamError& error) {
        if (answer.failure()) std::rethrow_exception(answer.failure());
        if (error.kind() == StreamError::Kind::timeout) status = 504;
        problem = error.what();
    } catch (const HttpClientError& error) {
        problem = error.what();
    }
    _refuse(reply, status, *problem);
}

void ConsoleProxy::_refuse(HttpReply& reply, int status, const std::string& reason) const {
    const std::string words = "No answer from " + _settings.target + ": " + reason + ".\n";
    // Broken on purpose: the client must not take half an answer for a whole one.
    if (!reply.restart()) throw StreamError(StreamError::Kind::lost, reason);
    reply.notes().outcome = reason;
    reply.refuse(status, {}, words);
}

}  // namespace cimhost
