#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/CimOperations.h"

#include <string_view>

namespace cimhost {

/// The methods by which another process has an indication provider asked about filters. They are
/// those of this class, in the namespace that the filter is for, which no schema needs to define.
/// Parameters: Query and QueryLanguage, but not of the last two, and of ActivateFilter and
/// DeActivateFilter IsFirst or IsLast. MustPoll returns what the provider answers.
namespace filterMethods {
inline constexpr const char* className = "CIMHOST_IndicationProvider";
inline constexpr const char* authorize = "AuthorizeFilter";
inline constexpr const char* mustPoll = "MustPoll";
inline constexpr const char* activate = "ActivateFilter";
inline constexpr const char* deactivate = "DeActivateFilter";
inline constexpr const char* enable = "EnableIndications";
inline constexpr const char* disable = "DisableIndications";
}  // namespace filterMethods

/// The operations of one provider, asked in the name of another process, which has looked for the
/// provider, has held the request against the classes and will do so with the results: here nothing
/// is added and nothing left out. For one request; LinkNotes names the rest.
class ProviderOperations final : public CimOperations {
public:
    /// All outlive this. `className` is the class that a query is to be answered for.
    ProviderOperations(Broker& broker, ModuleHost& modules, std::string_view provider,
                       std::string_view className)
        : _broker(broker), _modules(modules), _provider(provider), _className(className) {}

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

    /// Never asked: single properties are parts of their instances.
    Value getProperty(const RequestContext&, const ObjectPath&, std::string_view property) override;
    void setProperty(const RequestContext&, const ObjectPath&, std::string_view property,
                     Value value) override;
    void execQuery(const RequestContext&, const std::string& language, const std::string& query,
                   InstanceSink&) override;
    MethodResult invokeMethod(const RequestContext&, const ObjectPath&, const std::string& method,
                              const Arguments& in) override;

private:
    /// The registration of the provider for the class or its nearest ancestor, or else any.
    const Registration& _registration(ProviderType type, std::string_view nameSpace,
                                      std::string_view className) const;
    template <typename MI>
    MiUse<MI> _use(const RequestContext& request, std::string_view className);
    template <typename MI, typename Slot, typename... Texts>
    void _walk(const RequestContext& request, const ObjectPath& path, CMPIFlags flags,
               ResultSink& results, Slot slot, Texts... texts);
    Value _askAboutFilter(const RequestContext& request, const std::string& method,
                          const Arguments& in);

    Broker& _broker;
    ModuleHost& _modules;
    std::string_view _provider;
    std::string_view _className;
};

}  // namespace cimhost
