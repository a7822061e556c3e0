#include "cimhost/server/CimXmlAdapter.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/cimxml/Message.h"
#include "cimhost/modules/AskedProviders.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/LoggedRequest.h"
#include "cimhost/server/events/RequestEvent.h"

namespace cimhost {
namespace {

constexpr std::size_t maximumDescriptionBytes = 1024;

}  // namespace

std::string_view aboutCimhost(CimXmlHttpReply::Kind kind) noexcept {
    if (kind == CimXmlHttpReply::Kind::exported) {
        return "This is 'cimhost listen': it takes CIM-XML indications by POST (headers CIMExport "
               "and CIMExportMethod) and has no pages; see docs/cimhost.md.\n";
    }
    return "This is cimhost, a CIM object manager: it answers CIM-XML requests by POST (headers "
           "CIMOperation, CIMMethod and CIMObject), as wbemcli and pywbem send them; see "
           "docs/cimhost.md.\n";
}

void CimXmlAdapter::handle(const HttpRequest& request, HttpReply& reply) {
    reply.notes().operation = request.header("CIMMethod").value_or(std::string_view{});
    reply.notes().object = request.header("CIMObject").value_or(std::string_view{});
    const LoggedRequest logged(++_requests, reply.notes().operation);
    if (!_feed || !_feed->isWatched()) return _answer(request, reply, nullptr);
    const auto event = std::make_shared<RequestEvent>();
    event->number = logged.number;
    reply.notes().atEnd = [this, event](const AccessRecord& record) {
        tell(*_feed, *event, record);
    };
    const AskedProviders asked(event->providers);
    _answer(request, reply, &event->className);
}

void CimXmlAdapter::_answer(const HttpRequest& request, HttpReply& reply,
                            std::string* className) const {
    const CimXmlRequest cimRequest{
        [&request](std::string_view name) { return request.header(name); }, request.body,
        request.principal, request.serverName()};
    CimXmlHttpReply cimReply(reply, CimXmlHttpReply::Kind::operation, className);
    _handler.handle(cimRequest, cimReply);
}

std::string_view CimXmlAdapter::about() const noexcept {
    return aboutCimhost(CimXmlHttpReply::Kind::operation);
}

void ExportAdapter::handle(const HttpRequest& request, HttpReply& reply) {
    CimXmlHttpReply cimReply(reply, CimXmlHttpReply::Kind::exported);
    _handler.handle({[&request](std::string_view name) { return request.header(name); },
                     request.body, request.principal, request.serverName()},
                    cimReply);
}

std::string_view ExportAdapter::about() const noexcept {
    return aboutCimhost(CimXmlHttpReply::Kind::exported);
}

CimXmlHttpReply::CimXmlHttpReply(HttpReply& reply, Kind kind, std::string* className)
    : _reply(reply), _kind(kind), _className(className) {
    _addHeaders();
}

void CimXmlHttpReply::_addHeaders() {
    _reply.addHeader({"Content-Type", "application/xml; charset=\"utf-8\""});
    _reply.addHeader({_kind == Kind::operation ? "CIMOperation" : "CIMExport", "MethodResponse"});
    _reply.announceTrailers("CIMError, CIMStatusCode, CIMStatusCodeDescription");
}

void CimXmlHttpReply::refuse(int status, std::string_view cimError) {
    _reply.notes().outcome = cimError;
    if (cimError.empty()) {
        _reply.refuse(status, {}, status == 503 ? std::string_view{} : aboutCimhost(_kind));
    } else {
        _reply.refuse(status, {{"CIMError", cimError}});
    }
}

void CimXmlHttpReply::write(std::string_view text) try {
    _reply.write(text);
} catch (const SpoolError& error) {
    const bool isFull = error.kind() == SpoolError::Kind::full;
    throw CimError(isFull ? CimCode::serverLimitsExceeded : CimCode::failed, error.what());
}

bool CimXmlHttpReply::restart() {
    if (!_reply.restart()) return false;
    _addHeaders();
    return true;
}

void CimXmlHttpReply::noteMessage(const Message& message) {
    if (_className) *_className = classAskedFor(message);
}

void CimXmlHttpReply::noteFailure(int code) { _reply.notes().outcome = std::to_string(code); }

void CimXmlHttpReply::fail(int code, std::string_view description) {
    _reply.setTrailer({"CIMStatusCode", std::to_string(code)});
    _reply.setTrailer({"CIMStatusCodeDescription",
                       escapeForHeader(description.substr(0, maximumDescriptionBytes))});
}

}  // namespace cimhost
