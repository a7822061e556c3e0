#include "cimhost/indications/SubscriptionRules.h"

#include "cimhost/operations/HostName.h"
#include "cimhost/query/WqlParser.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/ValueConversion.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace cimhost {

namespace {

constexpr auto interopNames =
    std::to_array<std::string_view>({"interop", "root/interop", "root/PG_InterOp"});

constexpr std::uint64_t policyIgnore = 2;    // of OnFatalErrorPolicy
constexpr std::uint64_t repetitionNone = 2;  // of RepeatNotificationPolicy
constexpr std::uint64_t protocolCimXml = 2;
constexpr std::uint64_t removalIgnore = 4;  // of SubscriptionRemovalAction

[[noreturn]] void unsupported(const std::string& message) {
    throw CimError(CimCode::notSupported, message);
}

const Value* valueOf(const Instance& instance, std::string_view property) noexcept {
    const PropertyValue* const found = instance.find(property);
    return found && !found->value.isNull() ? &found->value : nullptr;
}

std::optional<std::uint64_t> numberOf(const Instance& instance, std::string_view property) {
    const Value* const value = valueOf(instance, property);
    const auto* const number = value ? value->get<std::uint64_t>() : nullptr;
    return number ? std::optional(*number) : std::nullopt;
}

std::string requiredText(const Instance& instance, std::string_view property) {
    const Value* const value = valueOf(instance, property);
    const auto* const text = value ? value->get<Text>() : nullptr;
    if (!text) throwInvalidParameter("property " + std::string(property) + " has no value");
    return text->str();
}

/// What every client would give for this key, or nothing.
std::optional<std::string> usualKey(const std::string& className, std::string_view key) {
    if (equalNames(key, "SystemCreationClassName")) return systemClassName;
    if (equalNames(key, "SystemName")) return hostName();
    if (equalNames(key, "CreationClassName")) return className;
    return std::nullopt;
}

std::vector<std::string> namedSources(const Instance& filter) {
    std::vector<std::string> names;
    const Value* const several = valueOf(filter, "SourceNamespaces");
    if (const auto* const elements = several ? several->get<Value::Array>() : nullptr) {
        for (const Value& element : *elements) {
            if (const auto* const name = element.get<Text>()) names.push_back(name->str());
        }
    } else if (const Value* const one = valueOf(filter, "SourceNamespace")) {
        names.push_back(one->get<Text>()->str());
    }
    if (names.empty()) names.push_back(filter.path.nameSpace);
    return names;
}

void requireProperty(const Class& definition, const WqlOperand& operand) {
    const auto* const property = std::get_if<WqlProperty>(&operand);
    if (!property || equalNames(property->parts.front(), "__CLASS")) return;
    if (definition.findProperty(property->parts.front())) return;
    throw CimError(CimCode::invalidQuery, "the query names '" + property->text() +
                                              "', which class " + definition.name + " has not");
}

void requireProperties(const Class& definition, const WqlCondition& condition) {
    for (const WqlCondition& part : condition.parts) requireProperties(definition, part);
    if (condition.kind != WqlCondition::Kind::predicate) return;
    const WqlPredicate& predicate = condition.predicate;
    requireProperty(definition, predicate.left);
    // IS NULL has no right side.
    const bool isUnary =
        predicate.operation == WqlOperator::isNull || predicate.operation == WqlOperator::isNotNull;
    if (!isUnary) requireProperty(definition, predicate.right);
}

void requireSource(const NameSpace& nameSpace, const WqlQuery& query) {
    const Class* const definition = nameSpace.findClass(query.className);
    if (!definition) {
        throw CimError(CimCode::invalidClass, "the query asks for class '" + query.className +
                                                  "', which namespace " + nameSpace.name() +
                                                  " has not");
    }
    if (!definition->isIndication) {
        throw CimError(CimCode::invalidQuery,
                       "the query asks for class " + definition->name + ", which is no indication");
    }
    if (query.selection) {
        for (const WqlProperty& property : *query.selection) requireProperty(*definition, property);
    }
    if (query.condition) requireProperties(*definition, *query.condition);
}

}  // namespace

std::vector<const NameSpace*> interopNameSpaces(const Repository& repository) {
    std::vector<const NameSpace*> found;
    for (const std::string_view name : interopNames) {
        const NameSpace* const nameSpace = repository.find(name);
        if (nameSpace && nameSpace->findClass("CIM_IndicationFilter") &&
            nameSpace->findClass("CIM_ListenerDestinationCIMXML") &&
            nameSpace->findClass("CIM_IndicationSubscription")) {
            found.push_back(nameSpace);
        }
    }
    return found;
}

std::optional<SubscriptionPart> partOf(const NameSpace& nameSpace, std::string_view className) {
    for (const SubscriptionClass& each : subscriptionClasses) {
        if (nameSpace.isA(className, each.name)) return each.part;
    }
    return std::nullopt;
}

Instance completeInstance(const NameSpace& nameSpace, Instance instance) {
    const Class& definition = *nameSpace.findClass(instance.className());
    instance.path = {{}, nameSpace.name(), definition.name, {}};
    for (const auto& property : definition.properties) {
        if (!valueOf(instance, property->name) && !property->defaultValue.isNull()) {
            instance.set(property->name, property->defaultValue);
        }
        if (!property->isKey) continue;
        if (!valueOf(instance, property->name)) {
            const auto usual = usualKey(definition.name, property->name);
            if (!usual) throwInvalidParameter("key " + property->name + " has no value");
            instance.set(property->name, Value::string(*usual));
        }
        instance.path.setKey(property->name, *valueOf(instance, property->name));
    }
    const Value* const creationClass = valueOf(instance, "CreationClassName");
    if (creationClass && !equalNames(*creationClass->get<Text>(), definition.name)) {
        throwInvalidParameter("CreationClassName is not " + definition.name +
                              ", the class of the instance");
    }
    return instance;
}

ObjectPath completePath(const Repository& repository, ObjectPath path) {
    const NameSpace* const nameSpace = repository.find(path.nameSpace);
    const Class* const definition = nameSpace ? nameSpace->findClass(path.className) : nullptr;
    if (!definition) return path;
    path.nameSpace = nameSpace->name();
    for (const auto& property : definition->properties) {
        if (!property->isKey || path.findKey(property->name)) continue;
        const auto usual = usualKey(definition->name, property->name);
        if (usual) path.setKey(property->name, Value::string(*usual));
    }
    return path;
}

FilterMeaning judgeFilter(const Repository& repository, const Instance& filter) {
    FilterMeaning meaning;
    const std::string& text = requiredText(filter, "Query");
    auto query =
        std::make_shared<const WqlQuery>(parseQuery(requiredText(filter, "QueryLanguage"), text));
    for (const std::string& name : namedSources(filter)) {
        const NameSpace& nameSpace = repository.get(name);
        requireSource(nameSpace, *query);
        const auto& known = meaning.nameSpaces;
        if (std::ranges::find(known, nameSpace.name()) == known.end()) {
            meaning.nameSpaces.push_back(nameSpace.name());
        }
    }
    meaning.query = std::move(query);
    return meaning;
}

ListenerUrl judgeDestination(const Instance& destination) {
    if (numberOf(destination, "Protocol").value_or(protocolCimXml) != protocolCimXml) {
        unsupported("indications are sent by CIM-XML only (Protocol 2)");
    }
    return parseListenerUrl(requiredText(destination, "Destination"));
}

void judgeSubscription(const Instance& subscription) {
    for (const std::string_view end : {"Filter", "Handler"}) {
        if (!referenceOf(subscription, end)) {
            throwInvalidParameter(std::string(end) + " has no value");
        }
    }
    const std::uint64_t state = numberOf(subscription, "SubscriptionState").value_or(stateEnabled);
    if (state != stateEnabled && state != stateDisabled) {
        throwInvalidParameter("SubscriptionState is neither enabled (2) nor disabled (4)");
    }
    if (numberOf(subscription, "OnFatalErrorPolicy").value_or(policyIgnore) != policyIgnore) {
        unsupported("OnFatalErrorPolicy can only be to ignore errors (2)");
    }
    if (numberOf(subscription, "RepeatNotificationPolicy").value_or(repetitionNone) !=
        repetitionNone) {
        unsupported("RepeatNotificationPolicy can only be none (2)");
    }
    if (valueOf(subscription, "SubscriptionDuration")) {
        unsupported(
            "subscriptions last until they are deleted; SubscriptionDuration cannot be set");
    }
}

bool isEnabled(const Instance& subscription) noexcept {
    return numberOf(subscription, "SubscriptionState").value_or(stateEnabled) == stateEnabled;
}

const ObjectPath* referenceOf(const Instance& instance, std::string_view property) noexcept {
    const PropertyValue* const found = instance.find(property);
    const auto* const path =
        found ? found->value.get<std::shared_ptr<const ObjectPath>>() : nullptr;
    return path ? path->get() : nullptr;
}

void setDeclared(const NameSpace& nameSpace, Instance& instance, std::string_view property,
                 const Value& value) {
    const Class* const definition = nameSpace.findClass(instance.className());
    const PropertyDefinition* const declared =
        definition ? definition->findProperty(property) : nullptr;
    if (!declared) return;
    try {
        instance.set(declared->name, convertValue(value, declared->type, declared->isArray));
    } catch (const CimError&) {
        return;  // a schema of its own kind: the class means something else by the name
    }
}

Instance indicationService(const NameSpace& nameSpace, const DeliveryManner& manner,
                           const std::vector<DeliveryCounts>& counts) {
    Instance service;
    service.path.className = "CIM_IndicationService";
    const auto set = [&](std::string_view name, const Value& value) {
        setDeclared(nameSpace, service, name, value);
    };
    const auto number = [](std::uint64_t value) {
        return Value::unsignedInteger(CimType::uint64, value);
    };
    set("Name", Value::string("cimhost"));
    set("ElementName", Value::string("indications of cimhost"));
    set("FilterCreationEnabled", Value::boolean(true));
    set("DeliveryRetryAttempts", number(manner.attempts));
    set("DeliveryRetryInterval", number(static_cast<std::uint64_t>(manner.interval.count())));
    set("SubscriptionRemovalAction", number(removalIgnore));
    set("Started", Value::boolean(true));
    set("EnabledState", number(stateEnabled));
    Value::Array lines;
    for (const DeliveryCounts& each : counts) {
        lines.push_back(Value::string(each.name + ": " + std::to_string(each.raised) + " raised, " +
                                      std::to_string(each.sent) + " sent, " +
                                      std::to_string(each.dropped) + " dropped, " +
                                      std::to_string(each.waiting) + " waiting; " +
                                      std::to_string(each.retried) + " retries"));
    }
    set("StatusDescriptions", Value::array(CimType::string, std::move(lines)));
    return completeInstance(nameSpace, std::move(service));
}

}  // namespace cimhost
