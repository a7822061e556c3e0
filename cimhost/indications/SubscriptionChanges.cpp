#include "cimhost/indications/SubscriptionParts.h"
#include "cimhost/operations/Dispatch.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <type_traits>
#include <utility>

// How filters, destinations and subscriptions are modified and deleted.

namespace cimhost {

namespace {

[[noreturn]] void refuseUse(const Instance& instance) {
    throw CimError(CimCode::failed, describe(instance.path) + " is in use by a subscription");
}

void requireOwn(bool isStatic, const Instance& instance) {
    if (!isStatic) return;
    throw CimError(CimCode::failed,
                   describe(instance.path) + " came with the schema and stays as it is");
}

/// The instance with the properties of another, keys aside.
Instance merged(Instance instance, const Instance& changes) {
    for (const PropertyValue& property : changes.properties) {
        if (!instance.path.findKey(property.name)) instance.set(property.name, property.value);
    }
    return instance;
}

bool isAlike(const Instance& left, const Instance& right, std::string_view property) {
    const PropertyValue* const first = left.find(property);
    const PropertyValue* const second = right.find(property);
    const bool hasFirst = first && !first->value.isNull();
    const bool hasSecond = second && !second->value.isNull();
    return hasFirst == hasSecond && (!hasFirst || first->value == second->value);
}

bool differ(const Instance& left, const Instance& right,
            std::initializer_list<std::string_view> properties) {
    return !std::ranges::all_of(
        properties, [&](std::string_view property) { return isAlike(left, right, property); });
}

}  // namespace

void Subscriptions::modify(const RequestContext& request, const Instance& instance) {
    const Change change(*this);
    if (Filter* const filter = _find(_filters, instance.path)) {
        requireOwn(filter->isStatic, filter->instance);
        return _modifyFilter(*filter, merged(filter->instance, instance));
    }
    if (Destination* const destination = _find(_destinations, instance.path)) {
        requireOwn(destination->isStatic, destination->instance);
        return _modifyDestination(*destination, merged(destination->instance, instance));
    }
    if (Subscription* const subscription = _find(_subscriptions, instance.path)) {
        requireOwn(subscription->isStatic, subscription->instance);
        return _modifySubscription(request, *subscription,
                                   merged(subscription->instance, instance));
    }
    if (find(instance.path)) refuseChange(instance.path);
    refuseMissing(instance.path);
}

namespace {

/// Puts the changed instance in, and the old one back when the change cannot be kept.
void exchange(std::mutex& mutex, Instance& instance, Instance changed, auto&& save) {
    const auto put = [&](Instance next) {
        const std::lock_guard lock(mutex);
        return std::exchange(instance, std::move(next));
    };
    Instance old = put(std::move(changed));
    try {
        save();
    } catch (const std::exception& error) {
        put(std::move(old));
        throw CimError(CimCode::failed, error.what());
    }
}

}  // namespace

void Subscriptions::_modifyFilter(Filter& filter, Instance changed) {
    FilterMeaning meaning = judgeFilter(repository(), changed);
    const bool hasOtherMeaning =
        differ(filter.instance, changed,
               {"Query", "QueryLanguage", "SourceNamespace", "SourceNamespaces"});
    if (hasOtherMeaning && filter.subscribers != 0) refuseUse(filter.instance);
    exchange(_mutex, filter.instance, std::move(changed), [this] { _save(); });
    filter.meaning = std::move(meaning);
}

void Subscriptions::_modifyDestination(Destination& destination, Instance changed) {
    ListenerUrl url = judgeDestination(changed);
    const bool leadsElsewhere = differ(destination.instance, changed, {"Destination"});
    if (leadsElsewhere && destination.subscribers != 0) refuseUse(destination.instance);
    exchange(_mutex, destination.instance, std::move(changed), [this] { _save(); });
    if (!leadsElsewhere) return;
    destination.url = std::move(url);
    destination.queue.reset();
}

void Subscriptions::_modifySubscription(const RequestContext& request, Subscription& subscription,
                                        Instance changed) {
    judgeSubscription(changed);
    const NameSpace& nameSpace = repository().get(changed.path.nameSpace);
    if (differ(subscription.instance, changed, {"SubscriptionState"})) {
        setDeclared(nameSpace, changed, "TimeOfLastStateChange", now());
    }
    const bool wasActive = subscription.route != nullptr;
    const bool willBeActive = isEnabled(changed);
    if (!wasActive && willBeActive) _activate(request, subscription);
    try {
        exchange(_mutex, subscription.instance, std::move(changed), [this] { _save(); });
    } catch (const CimError&) {
        if (!wasActive) _deactivate(request, subscription);
        throw;
    }
    if (!willBeActive) _deactivate(request, subscription);
    const std::lock_guard lock(_mutex);
    subscription.isRefused = false;
}

void Subscriptions::remove(const RequestContext& request, const ObjectPath& path) {
    const Change change(*this);
    // What is taken out goes back in its place when the change cannot be written, and ends
    // otherwise, once no lock is held.
    const auto take = [&](auto& parts, auto&& refuse, auto&& finish) {
        const auto found = std::ranges::find_if(
            parts, [&](const auto& part) { return isAt(part.instance, path); });
        if (found == parts.end()) return false;
        requireOwn(found->isStatic, found->instance);
        refuse(*found);
        std::remove_reference_t<decltype(parts)> taken;
        const auto next = std::next(found);
        const auto move = [&](auto& to, auto place, auto& from) {
            const std::lock_guard lock(_mutex);
            to.splice(place, from, found);
        };
        move(taken, taken.begin(), parts);
        try {
            _save();
        } catch (const std::exception& error) {
            move(parts, next, taken);
            throw CimError(CimCode::failed, error.what());
        }
        finish(*found);
        return true;
    };
    const auto refuseUsed = [](const auto& part) {
        if (part.subscribers != 0) refuseUse(part.instance);
    };
    if (take(_filters, refuseUsed, [](auto&) {})) return;
    if (take(_destinations, refuseUsed, [](auto&) {})) return;
    const auto end = [&](Subscription& subscription) {
        _deactivate(request, subscription);
        --subscription.filter->subscribers;
        --subscription.destination->subscribers;
    };
    if (take(
            _subscriptions, [](auto&) {}, end)) {
        return;
    }
    if (find(path)) refuseChange(path);
    refuseMissing(path);
}

}  // namespace cimhost
