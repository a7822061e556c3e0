#include "cmpicpp/detail/MiTables.h"

#include "cmpicpp/CmpiHandle.h"
#include "cmpicpp/detail/Calls.h"
#include "cmpicpp/detail/Enumeration.h"
#include "cmpicpp/detail/ResultSinks.h"

#include <utility>

namespace CmpiCpp {

namespace {

/// Fills whatever slot a provider has nothing for. Touches no argument: those of mustPoll differ
/// between CMPI 2.0 and 2.1, and the last one of enumerateInstancesFiltered is in dispute.
template <typename... Arguments>
CMPIStatus notSupported(Arguments...) noexcept {
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

/// Runs `body` with the provider object of an MI.
template <typename Kind, typename Body>
CMPIStatus serve(const typename Kind::Mi* mi, const CMPIContext* context, Body&& body) noexcept {
    ServedMi<Kind>& served = ServedMi<Kind>::of(mi);
    return enter(served.broker, [&] { body(served.object(context), served.broker); });
}

/// The same for operations that produce something.
template <typename Kind, typename Body>
CMPIStatus produce(const typename Kind::Mi* mi, const CMPIContext* context,
                   const CMPIResult* result, Body&& body) noexcept {
    return serve<Kind>(mi, context,
                       [&](typename Kind::Provider& provider, const CMPIBroker* broker) {
                           body(provider, broker);
                           tell(result->ft->returnDone, result);
                       });
}

/// What a provider sees by reference during one call. It owns nothing, so its end is left out: that
/// of a sink would be a call into the exported class that it derives from.
template <typename T>
union Lent {
    template <typename... Arguments>
    explicit Lent(Arguments&&... arguments) noexcept
        : value(std::forward<Arguments>(arguments)...) {}
    Lent(const Lent&) = delete;
    Lent& operator=(const Lent&) = delete;
    ~Lent() {}

    operator T&() noexcept { return value; }

    T value;
};

Lent<const CmpiObjectPath> borrow(const CMPIBroker* broker, const CMPIObjectPath* path) noexcept {
    return Lent<const CmpiObjectPath>(CmpiHandle<CMPIObjectPath>::borrowed(broker, path));
}

Lent<const CmpiInstance> borrow(const CMPIBroker* broker, const CMPIInstance* instance) noexcept {
    return Lent<const CmpiInstance>(CmpiHandle<CMPIInstance>::borrowed(broker, instance));
}

Lent<const CmpiArgs> borrow(const CMPIBroker* broker, const CMPIArgs* args) noexcept {
    return Lent<const CmpiArgs>(CmpiHandle<CMPIArgs>::borrowed(broker, args));
}

// Instances.

CMPIStatus enumInstanceNames(CMPIInstanceMI* mi, const CMPIContext* context,
                             const CMPIResult* result, const CMPIObjectPath* path) noexcept {
    return produce<InstanceKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<PathSink> sink(result);
        provider.enumInstanceNames(CmpiContext(context), borrow(broker, path), sink);
    });
}

CMPIStatus enumInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                         const CMPIObjectPath* path, const char** properties) noexcept {
    return produce<InstanceKind>(mi, context, result, [&](auto& provider, auto* broker) {
        const Enumeration enumeration;
        Lent<InstanceSink> sink(result);
        provider.enumInstances(CmpiContext(context), borrow(broker, path), properties, sink);
    });
}

CMPIStatus getInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char** properties) noexcept {
    return produce<InstanceKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<InstanceSink> sink(result);
        provider.getInstance(CmpiContext(context), borrow(broker, path), properties, sink);
    });
}

CMPIStatus createInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                          const CMPIObjectPath* path, const CMPIInstance* instance) noexcept {
    return produce<InstanceKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<PathSink> sink(result);
        provider.createInstance(CmpiContext(context), borrow(broker, path),
                                borrow(broker, instance), sink);
    });
}

CMPIStatus modifyInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult*,
                          const CMPIObjectPath* path, const CMPIInstance* instance,
                          const char** properties) noexcept {
    return serve<InstanceKind>(mi, context, [&](auto& provider, auto* broker) {
        provider.modifyInstance(CmpiContext(context), borrow(broker, path),
                                borrow(broker, instance), properties);
    });
}

CMPIStatus deleteInstance(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult*,
                          const CMPIObjectPath* path) noexcept {
    return serve<InstanceKind>(mi, context, [&](auto& provider, auto* broker) {
        provider.deleteInstance(CmpiContext(context), borrow(broker, path));
    });
}

/// Delivers the instance at a path, or nothing when it has gone since its path was found.
void deliverFound(CmpiInstanceProvider& provider, const CmpiContext& context,
                  const CmpiObjectPath& path, CmpiInstanceResult& sink) {
    try {
        provider.getInstance(context, path, nullptr, sink);
    } catch (const CmpiStatus& status) {
        if (status.rc() != CMPI_RC_ERR_NOT_FOUND) throw;
    }
}

// The provider finds paths, CMPI wants the instances. They are fetched when the search is over: a
// provider may hold a lock while it delivers.
CMPIStatus execQuery(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                     const CMPIObjectPath* path, const char* query, const char* language) noexcept {
    return produce<InstanceKind>(mi, context, result, [&](auto& provider, auto* broker) {
        const CmpiContext wrapped(context);
        PathList found;
        provider.execQuery(wrapped, borrow(broker, path), toString(query), toString(language),
                           found);
        Lent<InstanceSink> sink(result);
        for (const CmpiObjectPath& match : found.paths()) {
            deliverFound(provider, wrapped, match, sink);
        }
    });
}

// Associations.

CMPIStatus associators(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                       const CMPIObjectPath* path, const char* associationClass,
                       const char* resultClass, const char* role, const char* resultRole,
                       const char** properties) noexcept {
    return produce<AssociationKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<InstanceSink> sink(result);
        provider.associators(CmpiContext(context), borrow(broker, path), associationClass,
                             resultClass, role, resultRole, properties, sink);
    });
}

CMPIStatus associatorNames(CMPIAssociationMI* mi, const CMPIContext* context,
                           const CMPIResult* result, const CMPIObjectPath* path,
                           const char* associationClass, const char* resultClass, const char* role,
                           const char* resultRole) noexcept {
    return produce<AssociationKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<PathSink> sink(result);
        provider.associatorNames(CmpiContext(context), borrow(broker, path), associationClass,
                                 resultClass, role, resultRole, sink);
    });
}

CMPIStatus references(CMPIAssociationMI* mi, const CMPIContext* context, const CMPIResult* result,
                      const CMPIObjectPath* path, const char* resultClass, const char* role,
                      const char** properties) noexcept {
    return produce<AssociationKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<InstanceSink> sink(result);
        provider.references(CmpiContext(context), borrow(broker, path), resultClass, role,
                            properties, sink);
    });
}

CMPIStatus referenceNames(CMPIAssociationMI* mi, const CMPIContext* context,
                          const CMPIResult* result, const CMPIObjectPath* path,
                          const char* resultClass, const char* role) noexcept {
    return produce<AssociationKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<PathSink> sink(result);
        provider.referenceNames(CmpiContext(context), borrow(broker, path), resultClass, role,
                                sink);
    });
}

// Methods.

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                        CMPIArgs* out) noexcept {
    return produce<MethodKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<MethodSink> sink(broker, result, out);
        provider.invokeMethod(CmpiContext(context), borrow(broker, path), method,
                              borrow(broker, in), sink);
    });
}

// Indications.

CMPIStatus authorizeFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                           const CMPISelectExp* filter, const char* className,
                           const CMPIObjectPath* path, const char* owner) noexcept {
    return serve<IndicationKind>(mi, context, [&](auto& provider, auto* broker) {
        provider.authorizeFilter(CmpiContext(context), filter, toString(className),
                                 borrow(broker, path), toString(owner));
    });
}

CMPIStatus activateFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                          const CMPISelectExp* filter, const char* className,
                          const CMPIObjectPath* path, CMPIBoolean first) noexcept {
    return serve<IndicationKind>(mi, context, [&](auto& provider, auto* broker) {
        provider.activateFilter(CmpiContext(context), filter, toString(className),
                                borrow(broker, path), first != 0);
    });
}

CMPIStatus deactivateFilter(CMPIIndicationMI* mi, const CMPIContext* context,
                            const CMPISelectExp* filter, const char* className,
                            const CMPIObjectPath* path, CMPIBoolean last) noexcept {
    return serve<IndicationKind>(mi, context, [&](auto& provider, auto* broker) {
        provider.deactivateFilter(CmpiContext(context), filter, toString(className),
                                  borrow(broker, path), last != 0);
    });
}

CMPIStatus enableIndications(CMPIIndicationMI* mi, const CMPIContext* context) noexcept {
    return serve<IndicationKind>(mi, context, [&](auto& provider, auto*) {
        provider.enableIndications(CmpiContext(context));
    });
}

CMPIStatus disableIndications(CMPIIndicationMI* mi, const CMPIContext* context) noexcept {
    return serve<IndicationKind>(mi, context, [&](auto& provider, auto*) {
        provider.disableIndications(CmpiContext(context));
    });
}

/// The level of our tables. The slots that 2.1 added are filled all the same where the headers have
/// them, for a broker that looks beyond the level.
constexpr int tableLevel = 200;

// As an initialiser, since headers of CMPI 2.0 have miVersion constant.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmissing-field-initializers"
template <typename Table>
Table emptyTable() noexcept {
    return {.ftVersion = tableLevel, .miVersion = tableLevel};
}
#pragma GCC diagnostic pop

// Templates, since headers of CMPI 2.0 do not have the members.

template <typename Table>
void fillNewerInstanceSlots(Table& table) noexcept {
    if constexpr (requires { table.enumerateInstancesFiltered; }) {
        table.enumerateInstancesFiltered = notSupported;
    }
}

template <typename Table>
void fillNewerAssociationSlots(Table& table) noexcept {
    if constexpr (requires { table.associatorsFiltered; }) {
        table.associatorsFiltered = notSupported;
        table.referencesFiltered = notSupported;
    }
}

template <typename Table>
void fillNewerIndicationSlots(Table& table) noexcept {
    if constexpr (requires { table.authorizeFilterCollection; }) {
        table.authorizeFilterCollection = notSupported;
        table.activateFilterCollection = notSupported;
        table.deActivateFilterCollection = notSupported;
    }
}

}  // namespace

InstanceKind::Table InstanceKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.enumerateInstanceNames = enumInstanceNames;
    table.enumerateInstances = enumInstances;
    table.getInstance = getInstance;
    table.createInstance = createInstance;
    table.modifyInstance = modifyInstance;
    table.deleteInstance = deleteInstance;
    table.execQuery = execQuery;
    fillNewerInstanceSlots(table);
    return table;
}

AssociationKind::Table AssociationKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.associators = associators;
    table.associatorNames = associatorNames;
    table.references = references;
    table.referenceNames = referenceNames;
    fillNewerAssociationSlots(table);
    return table;
}

MethodKind::Table MethodKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.invokeMethod = invokeMethod;
    return table;
}

IndicationKind::Table IndicationKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.authorizeFilter = authorizeFilter;
    table.mustPoll = notSupported;
    table.activateFilter = activateFilter;
    table.deActivateFilter = deactivateFilter;
    table.enableIndications = enableIndications;
    table.disableIndications = disableIndications;
    fillNewerIndicationSlots(table);
    return table;
}

}  // namespace CmpiCpp
