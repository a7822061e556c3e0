#include "cimhost/cimxml/ExportHandler.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/cimxml/Message.h"
#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/cimxml/XmlBuffer.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <optional>
#include <string>

namespace cimhost {
namespace {

constexpr std::string_view methodName = "ExportIndication";

std::optional<Refusal> checkExportHeaders(const CimXmlRequest& request) {
    const auto exportHeader = request.header("CIMExport");
    if (exportHeader && !equalNames(*exportHeader, "MethodRequest")) {
        return Refusal{400, "unsupported-operation"};
    }
    const auto method = request.header("CIMExportMethod");
    if (method && !equalNames(percentDecode(*method), methodName)) {
        return Refusal{400, "header-mismatch"};
    }
    const auto contentType = request.header("Content-Type");
    if (!contentType || !isReadableXml(*contentType)) return Refusal{406, "header-mismatch"};
    return std::nullopt;
}

/// The one call that the message makes. Throws Refusal where it makes none, or several.
Element readCall(const XmlDocument& document) {
    const Element message = *document.root().firstChild();
    checkVersions(document.root(), message);
    const Element content = *message.firstChild();
    if (content.tag() == Tag::multipleExportRequest) {
        throw Refusal{501, "multiple-requests-unsupported"};
    }
    if (content.tag() != Tag::simpleExportRequest) throw Refusal{400, "request-not-valid"};
    return *content.child(Tag::exportCall);
}

Instance readIndication(const Element& call) {
    const Repository nothing;
    const NameSpace unknown{std::string()};
    for (const Element parameter : call.children()) {
        if (!equalNames(parameter.attributeText(Attribute::name), "NewIndication")) continue;
        if (const std::optional<Element> instance = parameter.child(Tag::instance)) {
            return ModelReader(nothing, unknown).undeclaredInstance(*instance);
        }
    }
    throw CimError(CimCode::invalidParameter, "there is no parameter NewIndication");
}

void take(const Element& call, const ExportHandler::Taker& taker) {
    const std::string_view name = call.attributeText(Attribute::name);
    if (!equalNames(name, methodName)) {
        throw CimError(CimCode::notSupported, "method " + std::string(name) + " is not supported");
    }
    taker(readIndication(call));
}

void writeAnswer(const Element& message, const Element& call, const std::optional<CimError>& error,
                 CimXmlReply& reply) {
    XmlBuffer out;
    out.markup(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE");
    out.attribute("ID", message.attributeText(Attribute::id));
    out.markup(" PROTOCOLVERSION=\"1.0\"><SIMPLEEXPRSP><EXPMETHODRESPONSE");
    out.attribute("NAME", call.attributeText(Attribute::name));
    out.markup(">");
    if (error) {
        reply.noteFailure(static_cast<int>(error->code()));
        out.markup("<ERROR");
        out.attribute("CODE", std::to_string(static_cast<int>(error->code())));
        out.attribute("DESCRIPTION", error->what());
        out.markup("/>");
    }
    out.markup("</EXPMETHODRESPONSE></SIMPLEEXPRSP></MESSAGE></CIM>\n");
    reply.write(out.view());
}

std::optional<CimError> failureOfTaking(const Element& call, const ExportHandler::Taker& taker) {
    try {
        take(call, taker);
        return std::nullopt;
    } catch (const CimError& error) {
        return error;
    } catch (const std::exception& error) {
        return CimError(CimCode::failed, error.what());
    }
}

}  // namespace

void ExportHandler::handle(const CimXmlRequest& request, CimXmlReply& reply) const {
    if (const auto refusal = checkExportHeaders(request)) {
        return reply.refuse(refusal->status, refusal->cimError);
    }
    std::optional<XmlDocument> document;
    std::optional<Element> call;
    try {
        document.emplace(request.body, TagSet{Tag::cim});
        call = readCall(*document);
    } catch (const XmlError& error) {
        return reply.refuse(400, requestError(error));
    } catch (const Refusal& refusal) {
        return reply.refuse(refusal.status, refusal.cimError);
    }
    const Element message = *document->root().firstChild();
    writeAnswer(message, *call, failureOfTaking(*call, _take), reply);
}

}  // namespace cimhost
