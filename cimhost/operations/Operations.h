#pragma once

#include "cimhost/operations/CimOperations.h"
#include "cimhost/operations/ResultJudge.h"
#include "cimhost/operations/Servers.h"

namespace cimhost {

class Broker;
class ModuleHost;

/// The instance operations of DSP0200 over modules and the host's own instances.
///
/// Who answers for a class:
/// - The provider registered for it. The class that a request names, when it has no registration,
///   is the business of its nearest ancestor's provider.
/// - An enumeration asks the provider of every registered subclass too, each about its own class.
///   Results of other classes, and of subclasses that are asked about on their own, are left out,
///   so that nothing comes twice.
/// - A source of the host's own answers like a provider for those of its classes whose instances
///   have no provider.
/// - Classes that nobody answers for have their static instances, and CIM_ObjectManager,
///   CIM_Namespace and __Namespace have built-in ones. Those can only be read.
/// - An association walk asks each provider that has an association able to refer to the source,
///   and of the association class asked for, once and with the client's filters as they are.
///   Results of another result class are left out. Where there are no filters, "not supported" of
///   one provider is passed over when another answers. "Not found" from any walk is an empty
///   result; every other failure ends the operation, what was delivered before notwithstanding.
///
/// Requests are held against the classes before a provider is asked: paths have all keys and no
/// others, values have the declared types or can take them, and names are spelled as declared.
/// LocalOnly counts as false. Property lists are passed on, but not in association walks, where
/// some providers refuse them; what is shown is decided by the selection that sinks are given in
/// any case.
///
/// What providers deliver is held against its classes, but for the answers of queries, which are
/// what the query says, and those to up-calls: they reach a client by a provider that is held.
///
/// Provider calls nest 32 deep on a thread. Texts of errors name what was not found or refused.
class Operations final : public CimOperations {
public:
    /// Broker and modules must outlive the operations.
    Operations(Broker& broker, ModuleHost& modules, ResultPolicy results = ResultPolicy::warn);

    /// From now on the source answers for its classes. Before the first request for them; the
    /// source outlives the last one.
    void add(InstanceSource& source) { _servers.add(source); }

    /// notFound also when the provider succeeds and delivers nothing.
    void getInstance(const RequestContext&, const ObjectPath&, const InstanceOptions&,
                     InstanceSink&) override;
    void enumerateInstances(const RequestContext&, const ObjectPath& classPath,
                            const InstanceOptions&, InstanceSink&) override;
    void enumerateInstanceNames(const RequestContext&, const ObjectPath& classPath,
                                PathSink&) override;
    /// The path is that of the class: keys are taken from the properties. invalidParameter for an
    /// abstract class.
    ObjectPath createInstance(const RequestContext&, const Instance&) override;
    /// A key among the selected properties must say what the path says, or it is invalidParameter.
    void modifyInstance(const RequestContext&, const Instance&,
                        const std::optional<std::vector<std::string>>& propertyList) override;
    void deleteInstance(const RequestContext&, const ObjectPath&) override;

    void associators(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                     const InstanceOptions&, InstanceSink&) override;
    void associatorNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                         PathSink&) override;
    /// `filter.resultClass` filters the association class, as DSP0200 has it for references.
    void references(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                    const InstanceOptions&, InstanceSink&) override;
    void referenceNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                        PathSink&) override;

    /// By getInstance and modifyInstance of the one property.
    Value getProperty(const RequestContext&, const ObjectPath&, std::string_view property) override;
    void setProperty(const RequestContext&, const ObjectPath&, std::string_view property,
                     Value value) override;
    /// Run by the providers of the class behind FROM; `language` is WQL, CQL or DMTF:CQL.
    void execQuery(const RequestContext&, const std::string& language, const std::string& query,
                   InstanceSink&) override;
    /// A path without keys is the class. Parameters left out are NULL, which those qualified as
    /// Required may not be. What the provider answers gets the declared types, or the call fails.
    MethodResult invokeMethod(const RequestContext&, const ObjectPath&, const std::string& method,
                              const Arguments& in) override;

private:
    const ResultJudge* _judgeFor(const RequestContext& request) const noexcept;

    Broker& _broker;
    ModuleHost& _modules;
    Servers _servers;
    ResultJudge _judge;
};

}  // namespace cimhost
