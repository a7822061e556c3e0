#pragma once

#include "cimhost/objects/Objects.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

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

/// The operations of DSP0200 on instances, whoever answers them: this process by its modules, or
/// another one. Safe from several threads. Each fails with CimError, or with what the sink throws.
class CimOperations {
public:
    virtual ~CimOperations() = default;

    virtual void getInstance(const RequestContext&, const ObjectPath&, const InstanceOptions&,
                             InstanceSink&) = 0;
    virtual void enumerateInstances(const RequestContext&, const ObjectPath& classPath,
                                    const InstanceOptions&, InstanceSink&) = 0;
    virtual void enumerateInstanceNames(const RequestContext&, const ObjectPath& classPath,
                                        PathSink&) = 0;
    /// The path is that of the class; the result is that of what was made.
    virtual ObjectPath createInstance(const RequestContext&, const Instance&) = 0;
    virtual void modifyInstance(const RequestContext&, const Instance&,
                                const std::optional<std::vector<std::string>>& propertyList) = 0;
    virtual void deleteInstance(const RequestContext&, const ObjectPath&) = 0;

    virtual void associators(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                             const InstanceOptions&, InstanceSink&) = 0;
    virtual void associatorNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                                 PathSink&) = 0;
    /// `filter.resultClass` filters the association class, as DSP0200 has it for references.
    virtual void references(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                            const InstanceOptions&, InstanceSink&) = 0;
    virtual void referenceNames(const RequestContext&, const ObjectPath&, const AssociationFilter&,
                                PathSink&) = 0;

    virtual Value getProperty(const RequestContext&, const ObjectPath&,
                              std::string_view property) = 0;
    virtual void setProperty(const RequestContext&, const ObjectPath&, std::string_view property,
                             Value value) = 0;
    virtual void execQuery(const RequestContext&, const std::string& language,
                           const std::string& query, InstanceSink&) = 0;
    /// A path without keys is the class.
    virtual MethodResult invokeMethod(const RequestContext&, const ObjectPath&,
                                      const std::string& method, const Arguments& in) = 0;
};

}  // namespace cimhost
