#include "cimhost/server/isolation/ModuleService.h"

#include "cimhost/cimxml/ExportMessage.h"
#include "cimhost/modules/ProviderCall.h"
#include "cimhost/operations/PropertyOperations.h"
#include "cimhost/operations/UpCalls.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/server/isolation/ProviderOperations.h"

#include <optional>
#include <string>
#include <utility>

namespace cimhost {
namespace {

/// The other side answers, or it is gone and so is the connection.
Clock::time_point waitForEver(Clock::time_point) { return Clock::now() + std::chrono::hours(1); }

std::vector<HttpAnswerHead::Field> notesOf(const RequestContext& context) {
    LinkNotes notes;
    notes.principal = context.principal;
    notes.nesting = CallNesting::count();
    return notes.headers();
}

void refuseExport(const LinkNotes&, const CimXmlRequest&, CimXmlReply& reply) {
    reply.refuse(501, "unsupported-operation");
}

}  // namespace

ModuleService::UpCallClient::UpCallClient(ClientTransport& transport, const Repository& repository)
    : CimXmlClient(transport, notesOf), _repository(repository) {}

Value ModuleService::UpCallClient::getProperty(const RequestContext& request,
                                               const ObjectPath& path, std::string_view property) {
    return readProperty(*this, _repository, request, path, property);
}

void ModuleService::UpCallClient::setProperty(const RequestContext& request, const ObjectPath& path,
                                              std::string_view property, Value value) {
    writeProperty(*this, _repository, request, path, property, std::move(value));
}

void ModuleService::Exporter::deliver(const RequestContext& context, std::string_view nameSpace,
                                      const Instance& indication) {
    LinkNotes notes;
    notes.principal = context.principal;
    notes.nameSpace = nameSpace;
    auto headers = notes.headers();
    headers.push_back({"CIMExport", "MethodRequest"});
    headers.push_back({"CIMExportMethod", "ExportIndication"});
    const NameSpace* const known = _repository.find(nameSpace);
    const Class* const definition = known ? known->findClass(indication.className()) : nullptr;
    XmlBuffer message(true);
    const PropertySelection all;
    writeExport(message, 1, {indication, definition, all, {}}, _transport.host(), nameSpace);
    std::string answer;
    const HttpAnswerHead head = _transport.post(
        std::move(headers), message.view(), [&answer](std::string_view piece) { answer += piece; });
    const std::optional<std::string> problem =
        head.status == 200 ? exportFailure(answer) : std::to_string(head.status);
    if (problem) throw CimError(CimCode::failed, *problem);
}

ModuleService::ModuleService(const Repository& repository, Registrations registrations,
                             std::vector<std::filesystem::path> folders, BrokerLog& log,
                             const Manner& manner, Descriptor control)
    : _broker(repository, log, fillUpCalls, manner),
      _handler(
          [this, &repository](const LinkNotes& notes, const CimXmlRequest& request,
                              CimXmlReply& reply) {
              const ToldElsewhere told;
              ProviderOperations operations(_broker, _modules, notes.provider, notes.className);
              CimXmlHandler(operations, repository).handle(request, reply);
          },
          refuseExport),
      _link(std::move(control), _handler),
      _transport([this] { return _link.connect(); }, {"localhost", waitForEver}),
      _upCalls(_transport, repository),
      _exporter(_transport, repository),
      _modules(_broker, std::move(registrations), std::move(folders)) {
    _broker.setOperations(&_upCalls);
    _broker.setIndicationSink(&_exporter);
}

bool ModuleService::shutDown(std::chrono::milliseconds patience) {
    if (!_modules.shutDown(patience)) return false;
    // A request that was refused may still be on its way back, with words of a provider.
    _link.end();
    return true;
}

void ModuleService::serve() {
    while (_link.serveOne()) {
    }
}

}  // namespace cimhost
