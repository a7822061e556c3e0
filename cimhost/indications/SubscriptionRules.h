#pragma once

#include "cimhost/indications/FilterActivation.h"
#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/indications/ListenerUrl.h"
#include "cimhost/repository/Instance.h"
#include "cimhost/repository/Repository.h"

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

/// What filters, destinations and subscriptions must be like. Pure functions, safe from several
/// threads.
namespace cimhost {

// The value map of CIM_IndicationSubscription.SubscriptionState (CIM schema 2.x).
inline constexpr std::uint64_t stateEnabled = 2;
inline constexpr std::uint64_t stateDisabled = 4;

/// The kinds of instances that make up subscriptions.
enum class SubscriptionPart { filter, destination, subscription, service };

struct SubscriptionClass {
    std::string_view name;
    SubscriptionPart part;
};

/// The classes that are served, where a namespace has them.
inline constexpr auto subscriptionClasses = std::to_array<SubscriptionClass>({
    {"CIM_IndicationFilter", SubscriptionPart::filter},
    {"CIM_ListenerDestinationCIMXML", SubscriptionPart::destination},
    {"CIM_IndicationHandlerCIMXML", SubscriptionPart::destination},
    {"CIM_IndicationSubscription", SubscriptionPart::subscription},
    {"CIM_IndicationService", SubscriptionPart::service},
});

/// The namespaces of the repository that clients subscribe in: "interop", "root/interop" and
/// "root/PG_InterOp", those of them that have all classes a subscription is made of.
std::vector<const NameSpace*> interopNameSpaces(const Repository& repository);

/// What the class is, or nothing for a class of another kind.
std::optional<SubscriptionPart> partOf(const NameSpace& nameSpace, std::string_view className);

/// The instance as it is kept: defaults of the class filled in, and those keys that every client
/// would give alike (SystemCreationClassName, SystemName, CreationClassName); its path made of its
/// keys. Throws CimError invalidParameter for another key that is missing, or a creation class that
/// is not the instance's.
Instance completeInstance(const NameSpace& nameSpace, Instance instance);

/// The path with those keys filled in.
ObjectPath completePath(const Repository& repository, ObjectPath path);

/// What a filter says. Without namespaces it means its own. Throws CimError invalidParameter
/// without query or language; invalidNamespace; invalidClass for an unknown class; invalidQuery for
/// a query that does not parse, a class that is no indication, or a property that the class has
/// not; queryLanguageNotSupported, queryFeatureNotSupported.
FilterMeaning judgeFilter(const Repository& repository, const Instance& filter);

/// Where a destination is. Throws CimError as parseListenerUrl does, and notSupported for another
/// protocol than CIM-XML.
ListenerUrl judgeDestination(const Instance& destination);

/// Refuses what subscriptions cannot do here: CimError notSupported for a policy on errors or
/// repetition, or a duration; invalidParameter for a state other than enabled and disabled, or a
/// reference that is NULL.
void judgeSubscription(const Instance& subscription);

/// True when the subscription's state asks for indications.
bool isEnabled(const Instance& subscription) noexcept;

/// The path that a reference leads to, or nullptr.
const ObjectPath* referenceOf(const Instance& instance, std::string_view property) noexcept;

/// Sets the property where the instance's class declares it, in the declared type.
void setDeclared(const NameSpace& nameSpace, Instance& instance, std::string_view property,
                 const Value& value);

/// The one instance of CIM_IndicationService in this namespace.
Instance indicationService(const NameSpace& nameSpace, const DeliveryManner& manner,
                           const std::vector<DeliveryCounts>& counts);

}  // namespace cimhost
