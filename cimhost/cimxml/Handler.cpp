#include "cimhost/cimxml/Handler.h"

#include "cimhost/cimxml/Call.h"
#include "cimhost/cimxml/Message.h"
#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/cimxml/ReplyStream.h"
#include "cimhost/cimxml/XmlDocument.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>
#include <exception>
#include <new>
#include <optional>
#include <string>

namespace cimhost {
namespace {

/// The elements round an answer.
class Envelope {
public:
    Envelope(XmlBuffer& out, const Message& message)
        : _out(out),
          _message(message),
          _response(message.isIntrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE") {}

    void open() const {
        _out.markup(
            "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
            "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.");
        _out.markup(_message.wantsTypedKeys ? "4" : "0");
        _out.markup("\"><MESSAGE");
        _out.attribute("ID", _message.id);
        _out.markup(" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><");
        _out.markup(_response);
        _out.attribute("NAME", _message.name);
        _out.markup(">");
    }

    void close() const {
        _out.markup("</");
        _out.markup(_response);
        _out.markup("></SIMPLERSP></MESSAGE></CIM>\n");
    }

private:
    XmlBuffer& _out;
    const Message& _message;
    std::string_view _response;
};

struct Failure {
    int code = 0;
    std::string description;
};

/// The exception being handled, as the client is to see it.
Failure currentFailure() {
    try {
        throw;
    } catch (const CimError& error) {
        const std::string_view text = error.what();
        return {static_cast<int>(error.code()),
                std::string(text.empty() ? std::string_view(codeName(error.code())) : text)};
    } catch (const std::bad_alloc&) {
        return {static_cast<int>(CimCode::failed), "there is not enough memory for the operation"};
    } catch (const std::exception& error) {
        return {static_cast<int>(CimCode::failed), error.what()};
    } catch (...) {
        return {static_cast<int>(CimCode::failed), "the operation failed for an unknown reason"};
    }
}

/// What the reply threw, as the client is to see it; of a client that is gone it goes on.
Failure failureOfReply(const std::exception_ptr& thrown) {
    try {
        std::rethrow_exception(thrown);
    } catch (const CimError&) {
        return currentFailure();
    }
}

void writeError(ReplyStream& out, const Message& message, const Failure& failure) {
    const Envelope envelope(out.buffer(), message);
    envelope.open();
    out.buffer().markup("<ERROR");
    out.buffer().attribute("CODE", std::to_string(failure.code));
    out.buffer().attribute("DESCRIPTION", failure.description);
    out.buffer().markup("/>");
    envelope.close();
    out.flush();
}

RequestContext makeContext(const CimXmlRequest& request, const NameSpace& nameSpace) {
    RequestContext context;
    context.nameSpace = nameSpace.name();
    context.principal = request.principal;
    context.acceptLanguage = request.header("Accept-Language").value_or("");
    context.contentLanguage = request.header("Content-Language").value_or("");
    context.isProviders = request.isForwarded;
    return context;
}

std::string nameSpaceOf(const Message& message) {
    const Element target = *message.call.firstChild();
    return joinNameSpace(message.isIntrinsic ? target : *target.firstChild());
}

bool changesSchema(std::string_view operation) noexcept {
    constexpr auto names = std::to_array<std::string_view>(
        {"CreateClass", "ModifyClass", "DeleteClass", "SetQualifier", "DeleteQualifier"});
    return std::ranges::any_of(names, [&](auto each) { return equalNames(each, operation); });
}

const IntrinsicOperation* requireOperation(const Message& message) {
    if (!message.isIntrinsic) return nullptr;
    if (const IntrinsicOperation* const operation = findIntrinsicOperation(message.name)) {
        return operation;
    }
    throw CimError(CimCode::notSupported,
                   "operation " + std::string(message.name) + " is not supported" +
                       (changesSchema(message.name) ? ": classes and qualifiers come from the MOF "
                                                      "files that the server is started with; "
                                                      "change those and start it again"
                                                    : ""));
}

/// Writes the whole answer to `out`; throws what goes wrong.
void answer(CimOperations& operations, const Repository& repository, const CimXmlRequest& request,
            const Message& message, ReplyStream& out) {
    const IntrinsicOperation* const operation = requireOperation(message);
    const NameSpace& nameSpace = repository.get(nameSpaceOf(message));
    std::optional<WrittenModel> written;
    if (request.isForwarded) written.emplace(nameSpace.name());
    Call call{operations,
              repository,
              nameSpace,
              makeContext(request, nameSpace),
              written ? written->reader() : ModelReader(repository, nameSpace),
              out,
              ObjectWriter(out.buffer(), request.host, nameSpace.name(), message.wantsTypedKeys),
              written ? &*written : nullptr};
    const Envelope envelope(out.buffer(), message);
    envelope.open();
    if (operation != nullptr) {
        operation->handler(call, Parameters(message.call, operation->parameters));
    } else {
        invokeMethod(call, message);
    }
    envelope.close();
    out.flush();
}

/// Reads the request. Nothing when it can be answered by a CIM message.
std::optional<Refusal> read(const CimXmlRequest& request, std::optional<XmlDocument>& document,
                            std::optional<Message>& message) {
    if (const std::optional<Refusal> refusal = checkHeaders(request)) return refusal;
    try {
        document.emplace(request.body, TagSet{Tag::cim});
        message = readMessage(request, *document);
        return std::nullopt;
    } catch (const XmlError& error) {
        return Refusal{400, requestError(error)};
    } catch (const Refusal& refusal) {
        return refusal;
    } catch (const std::bad_alloc&) {
        return Refusal{503, {}};
    }
}

}  // namespace

CimXmlHandler::CimXmlHandler(CimOperations& operations, const Repository& repository)
    : _operations(operations), _repository(repository) {}

void CimXmlHandler::handle(const CimXmlRequest& request, CimXmlReply& reply) const {
    std::optional<XmlDocument> document;
    std::optional<Message> message;
    if (const std::optional<Refusal> refusal = read(request, document, message)) {
        return reply.refuse(refusal->status, refusal->cimError);
    }
    reply.noteMessage(*message);

    ReplyStream out(reply, request.isForwarded);
    Failure failure;
    try {
        return answer(_operations, _repository, request, *message, out);
    } catch (...) {
        failure = out.failure() ? failureOfReply(out.failure()) : currentFailure();
    }
    reply.noteFailure(failure.code);
    if (out.restart()) {
        writeError(out, *message, failure);
    } else {
        reply.fail(failure.code, failure.description);
    }
}

}  // namespace cimhost
