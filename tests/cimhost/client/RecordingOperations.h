#pragma once

#include "cimhost/operations/CimOperations.h"

#include <functional>
#include <string>
#include <vector>

namespace cimhost {

/// Keeps what it is asked and answers as the test says.
class RecordingOperations : public CimOperations {
public:
    std::string operation;  ///< the last one, with all that it was asked with
    RequestContext context;
    ObjectPath path;
    Instance instance;
    InstanceOptions options;
    AssociationFilter filter;
    std::optional<std::vector<std::string>> propertyList;
    std::vector<std::string> texts;
    Arguments arguments;
    Value value;

    std::vector<Instance> instances;
    std::vector<ObjectPath> paths;
    MethodResult result;
    std::function<void()> atEnd;  ///< may throw

    void getInstance(const RequestContext& request, const ObjectPath& target,
                     const InstanceOptions& wanted, InstanceSink& sink) override;
    void enumerateInstances(const RequestContext& request, const ObjectPath& target,
                            const InstanceOptions& wanted, InstanceSink& sink) override;
    void enumerateInstanceNames(const RequestContext& request, const ObjectPath& target,
                                PathSink& sink) override;
    ObjectPath createInstance(const RequestContext& request, const Instance& given) override;
    void modifyInstance(const RequestContext& request, const Instance& given,
                        const std::optional<std::vector<std::string>>& names) override;
    void deleteInstance(const RequestContext& request, const ObjectPath& target) override;
    void associators(const RequestContext& request, const ObjectPath& target,
                     const AssociationFilter& wantedFilter, const InstanceOptions& wanted,
                     InstanceSink& sink) override;
    void associatorNames(const RequestContext& request, const ObjectPath& target,
                         const AssociationFilter& wantedFilter, PathSink& sink) override;
    void references(const RequestContext& request, const ObjectPath& target,
                    const AssociationFilter& wantedFilter, const InstanceOptions& wanted,
                    InstanceSink& sink) override;
    void referenceNames(const RequestContext& request, const ObjectPath& target,
                        const AssociationFilter& wantedFilter, PathSink& sink) override;
    Value getProperty(const RequestContext& request, const ObjectPath& target,
                      std::string_view property) override;
    void setProperty(const RequestContext& request, const ObjectPath& target,
                     std::string_view property, Value given) override;
    void execQuery(const RequestContext& request, const std::string& language,
                   const std::string& query, InstanceSink& sink) override;
    MethodResult invokeMethod(const RequestContext& request, const ObjectPath& target,
                              const std::string& method, const Arguments& in) override;

private:
    void _note(std::string name, const RequestContext& request, const ObjectPath& target);
    void _deliver(InstanceSink& sink) const;
    void _deliver(PathSink& sink) const;
};

}  // namespace cimhost
