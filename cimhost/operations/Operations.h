#pragma once

#include "cimhost/objects/Objects.h"
#include "cimhost/operations/Servers.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

class Broker;
class ModuleHost;

/// Which properties of an instance the asker gets to see.
/// LocalOnly is treated as false for instances, as DSP0200 advises since 1.3.
struct PropertySelection {
    std::optional<std::vector<std::string>> names;  ///< the property list; none: all
    /// Set for DeepInheritance=false: only properties that this class knows.
    const Class* limit = nullptr;

    // In line: most askers want all.
    bool selects(std::string_view property) const noexcept {
        return (!names && !limit) || lists(property);
    }
    bool lists(std::string_view property) const noexcept;  ///< the same, where some are left out
};

struct InstanceOptions {
    std::optional<std::vector<std::string>> propertyList;
    bool localOnly = false;
    bool deepInheritance = true;
    bool includeQualifiers = false;
    bool includeClassOrigin = false;
};

/// Empty names do not filter.
struct AssociationFilter {
    std::string associationClass;
    std::string resultClass;
    std::string role;
    std::string resultRole;
};

/// Takes instances as providers deliver them; nothing is kept between deliveries.
/// An exception ends the operation.
class InstanceSink {
public:
    virtual ~InstanceSink() = default;
    /// `definition` is the instance's own class, or nullptr when the repository does not know it.
    virtual void deliver(const Instance& instance, const Class* definition,
                         const PropertySelection& selection) = 0;
};

class PathSink {
public:
    virtual ~PathSink() = default;
    virtual void deliver(const ObjectPath& path) = 0;
};

struct MethodResult {
    Value returnValue;
    Arguments out;
};

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
/// Provider calls nest 32 deep on a thread. Safe from several threads. Each operation fails with
/// CimError, or with what the sink throws; texts name what was not found or refused.
class Operations {
public:
    /// Broker and modules must outlive the operations.
    Operations(Broker& broker, ModuleHost& modules);

    /// From now on the source answers for its classes. Before the first request for them; the
    /// source outlives the last one.
    void add(InstanceSource& source) { _servers.add(source); }

    /// notFound also when the provider succeeds and delivers nothing.
    void getInstance(const RequestContext&, const ObjectPath&, const InstanceOptions&,
                     InstanceSink&);
    void enumerateInstances(const RequestContext&, const ObjectPath& classPath,
                            const InstanceOptions&, InstanceSink&);
    void enumerateInstanceNames(const RequestContext&, const ObjectPath& classPath, PathSink&);
    /// The path is that of the class: keys are taken from the properties. invalidParameter for an
    /// abstract class.
    ObjectPath createInstance(const RequestContext&, const Instance&);
    /// A key among the selected properties must say what the path says, or it is invalidParameter.
    void modifyInstance(const RequestContext&, const Instance&,
                        const std::optional<std::vector<std::string>>& propertyList);
    void deleteInstance(const RequestContext&, const ObjectPath&);

    void associators(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                     const InstanceOptions&, InstanceSink&);
    void associatorNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                         PathSink&);
    /// `filter.resultClass` filters the association class, as DSP0200 has it for references.
    void references(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                    const InstanceOptions&, InstanceSink&);
    void referenceNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                        PathSink&);

    /// By getInstance and modifyInstance of the one property.
    Value getProperty(const RequestContext&, const ObjectPath&, std::string_view property);
    void setProperty(const RequestContext&, const ObjectPath&, std::string_view property,
                     Value value);
    /// Run by the providers of the class behind FROM; `language` is WQL, CQL or DMTF:CQL.
    void execQuery(const RequestContext&, const std::string& language, const std::string& query,
                   InstanceSink&);
    /// A path without keys is the class. Parameters left out are NULL, which those qualified as
    /// Required may not be. What the provider answers gets the declared types, or the call fails.
    MethodResult invokeMethod(const RequestContext&, const ObjectPath&, const std::string& method,
                              const Arguments& in);

private:
    Broker& _broker;
    ModuleHost& _modules;
    Servers _servers;
};

}  // namespace cimhost
