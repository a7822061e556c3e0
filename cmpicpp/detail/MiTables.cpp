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

/// @{
/// An argument of the object manager as the provider takes it.
CmpiContext lend(const CMPIBroker*, const CMPIContext* context) noexcept {
    return CmpiContext(context);
}

Lent<const CmpiObjectPath> lend(const CMPIBroker* broker, const CMPIObjectPath* path) noexcept {
    return Lent<const CmpiObjectPath>(CmpiHandle<CMPIObjectPath>::borrowed(broker, path));
}

Lent<const CmpiInstance> lend(const CMPIBroker* broker, const CMPIInstance* instance) noexcept {
    return Lent<const CmpiInstance>(CmpiHandle<CMPIInstance>::borrowed(broker, instance));
}

Lent<const CmpiArgs> lend(const CMPIBroker* broker, const CMPIArgs* args) noexcept {
    return Lent<const CmpiArgs>(CmpiHandle<CMPIArgs>::borrowed(broker, args));
}

/// A text, which may be null.
struct LentText {
    operator CmpiName() const { return text; }
    operator std::string() const { return toString(text); }
    const char* text;
};

LentText lend(const CMPIBroker*, const char* text) noexcept { return {text}; }

/// What has the same form on both sides.
template <typename Argument>
Argument lend(const CMPIBroker*, Argument argument) noexcept {
    return argument;
}
/// @}

/// Fills the slot of an operation that produces nothing.
template <typename Kind, auto operation, typename... Arguments>
CMPIStatus served(typename Kind::Mi* mi, const CMPIContext* context,
                  Arguments... arguments) noexcept {
    return serve<Kind>(mi, context, [&](auto& provider, auto* broker) {
        (provider.*operation)(lend(broker, context), lend(broker, arguments)...);
    });
}

/// The same where the object manager passes a result, which stays untouched.
template <typename Kind, auto operation, typename... Arguments>
CMPIStatus changed(typename Kind::Mi* mi, const CMPIContext* context, const CMPIResult*,
                   Arguments... arguments) noexcept {
    return served<Kind, operation>(mi, context, arguments...);
}

/// Fills the slot of an operation that delivers to a sink of this type.
template <typename Kind, auto operation, typename Sink, typename... Arguments>
CMPIStatus produced(typename Kind::Mi* mi, const CMPIContext* context, const CMPIResult* result,
                    Arguments... arguments) noexcept {
    return produce<Kind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<Sink> sink(result);
        (provider.*operation)(lend(broker, context), lend(broker, arguments)..., sink);
    });
}

// What no provider operation answers by itself.

CMPIStatus enumInstances(CMPIInstanceMI* mi, const CMPIContext* context, const CMPIResult* result,
                         const CMPIObjectPath* path, const char** properties) noexcept {
    const Enumeration enumeration;
    return produced<InstanceKind, &CmpiInstanceProvider::enumInstances, InstanceSink>(
        mi, context, result, path, properties);
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
        provider.execQuery(wrapped, lend(broker, path), toString(query), toString(language), found);
        Lent<InstanceSink> sink(result);
        for (const CmpiObjectPath& match : found.paths()) {
            deliverFound(provider, wrapped, match, sink);
        }
    });
}

CMPIStatus invokeMethod(CMPIMethodMI* mi, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath* path, const char* method, const CMPIArgs* in,
                        CMPIArgs* out) noexcept {
    return produce<MethodKind>(mi, context, result, [&](auto& provider, auto* broker) {
        Lent<MethodSink> sink(broker, result, out);
        provider.invokeMethod(CmpiContext(context), lend(broker, path), method, lend(broker, in),
                              sink);
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
    Table table{.ftVersion = tableLevel, .miVersion = tableLevel};
    // In a template, since headers of CMPI 2.0 do not have the members.
    if constexpr (requires { table.enumerateInstancesFiltered; }) {
        table.enumerateInstancesFiltered = notSupported;
    }
    if constexpr (requires { table.associatorsFiltered; }) {
        table.associatorsFiltered = notSupported;
        table.referencesFiltered = notSupported;
    }
    if constexpr (requires { table.authorizeFilterCollection; }) {
        table.authorizeFilterCollection = notSupported;
        table.activateFilterCollection = notSupported;
        table.deActivateFilterCollection = notSupported;
    }
    return table;
}
#pragma GCC diagnostic pop

}  // namespace

InstanceKind::Table InstanceKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.enumerateInstanceNames = produced<InstanceKind, &Provider::enumInstanceNames, PathSink>;
    table.enumerateInstances = enumInstances;
    table.getInstance = produced<InstanceKind, &Provider::getInstance, InstanceSink>;
    table.createInstance = produced<InstanceKind, &Provider::createInstance, PathSink>;
    table.modifyInstance = changed<InstanceKind, &Provider::modifyInstance>;
    table.deleteInstance = changed<InstanceKind, &Provider::deleteInstance>;
    table.execQuery = execQuery;
    return table;
}

AssociationKind::Table AssociationKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.associators = produced<AssociationKind, &Provider::associators, InstanceSink>;
    table.associatorNames = produced<AssociationKind, &Provider::associatorNames, PathSink>;
    table.references = produced<AssociationKind, &Provider::references, InstanceSink>;
    table.referenceNames = produced<AssociationKind, &Provider::referenceNames, PathSink>;
    return table;
}

MethodKind::Table MethodKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.invokeMethod = invokeMethod;
    return table;
}

IndicationKind::Table IndicationKind::table() noexcept {
    auto table = emptyTable<Table>();
    table.authorizeFilter = served<IndicationKind, &Provider::authorizeFilter>;
    table.mustPoll = notSupported;
    table.activateFilter = served<IndicationKind, &Provider::activateFilter>;
    table.deActivateFilter = served<IndicationKind, &Provider::deactivateFilter>;
    table.enableIndications = served<IndicationKind, &Provider::enableIndications>;
    table.disableIndications = served<IndicationKind, &Provider::disableIndications>;
    return table;
}

}  // namespace CmpiCpp
