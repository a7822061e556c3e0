#pragma once

#include "cimhost/client/ClientTransport.h"
#include "cimhost/client/ReplyReader.h"
#include "cimhost/client/RequestMessage.h"
#include "cimhost/operations/CimOperations.h"

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cimhost {

/// The operations of another WBEM server, asked in CIM-XML (DSP0200, DSP0201).
///
/// A request is about the namespace of its path, or else of its context. It knows no classes:
/// results have the types and names that the server writes, and sinks are given neither a class nor
/// a selection. Results reach the sink as they come. Each operation fails with the server's
/// CimError; CimError failed for what is no reply; StreamError when there is no server or it does
/// not answer in time; what the sink throws. Safe from several threads.
class CimXmlClient : public CimOperations {
public:
    /// Headers beside those of every message, for a request in this context.
    using MoreHeaders = std::function<std::vector<HttpAnswerHead::Field>(const RequestContext&)>;

    /// The transport outlives the client.
    explicit CimXmlClient(ClientTransport& transport, MoreHeaders moreHeaders = {})
        : _transport(transport), _moreHeaders(std::move(moreHeaders)) {}

    void getInstance(const RequestContext&, const ObjectPath&, const InstanceOptions&,
                     InstanceSink&) override;
    void enumerateInstances(const RequestContext&, const ObjectPath& classPath,
                            const InstanceOptions&, InstanceSink&) override;
    void enumerateInstanceNames(const RequestContext&, const ObjectPath& classPath,
                                PathSink&) override;
    ObjectPath createInstance(const RequestContext&, const Instance&) override;
    void modifyInstance(const RequestContext&, const Instance&,
                        const std::optional<std::vector<std::string>>& propertyList) override;
    void deleteInstance(const RequestContext&, const ObjectPath&) override;

    void associators(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                     const InstanceOptions&, InstanceSink&) override;
    void associatorNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                         PathSink&) override;
    void references(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                    const InstanceOptions&, InstanceSink&) override;
    void referenceNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                        PathSink&) override;

    /// Texts, whatever their type: the reply does not tell it.
    Value getProperty(const RequestContext&, const ObjectPath&, std::string_view property) override;
    void setProperty(const RequestContext&, const ObjectPath&, std::string_view property,
                     Value value) override;
    void execQuery(const RequestContext&, const std::string& language, const std::string& query,
                   InstanceSink&) override;
    MethodResult invokeMethod(const RequestContext&, const ObjectPath&, const std::string& method,
                              const Arguments& in) override;

    /// The names of the direct subclasses, or with `deep` of all; of the topmost classes for an
    /// empty name.
    std::vector<std::string> enumerateClassNames(const RequestContext&, std::string_view className,
                                                 bool deep);

    /// The class with all that it inherits, its qualifiers and origins.
    Class getClass(const RequestContext&, std::string_view className);

    /// Any other operation without a result of its own, such as GetQualifier: `add` adds the
    /// parameters, `take` takes the elements of the result.
    void ask(const RequestContext&, std::string_view operation,
             const std::function<void(RequestMessage&)>& add, const ReplyReader::Taker& take);

private:
    RequestMessage _message(std::string_view operation, const RequestContext& context,
                            const ObjectPath& path) const;
    std::vector<HttpAnswerHead::Field> _headers(const RequestContext& context,
                                                const RequestMessage& message) const;
    void _send(const RequestContext& context, RequestMessage& message,
               const ReplyReader::Taker& take);

    ClientTransport& _transport;
    MoreHeaders _moreHeaders;
};

}  // namespace cimhost
