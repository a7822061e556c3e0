#include "cimhost/indications/Subscriptions.h"

#include "cimhost/indications/SubscriptionFile.h"
#include "cimhost/indications/SubscriptionParts.h"
#include "cimhost/indications/SubscriptionRules.h"
#include "cimhost/indications/SubscriptionText.h"
#include "cimhost/mof/MofCursor.h"
#include "cimhost/operations/Dispatch.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <utility>

namespace cimhost {

namespace {

void requireRoom(std::size_t count, std::size_t limit, const char* what) {
    if (count < limit) return;
    throw CimError(CimCode::serverLimitsExceeded,
                   "there are " + std::to_string(count) + " " + what + ", the most there may be");
}

/// Shows the subscription with this path, if it is among those found, as what it is in effect.
void showDisabled(const NameSpace& nameSpace, const ObjectPath& path,
                  std::vector<Instance>& found) {
    for (Instance& instance : found) {
        if (!isAt(instance, path)) continue;
        setDeclared(nameSpace, instance, "SubscriptionState",
                    Value::unsignedInteger(CimType::uint64, stateDisabled));
    }
}

std::string nameOf(const Instance& instance) {
    const PropertyValue* const name = instance.find("Name");
    const auto* const text = name ? name->value.get<Text>() : nullptr;
    return text ? text->str() : std::string();
}

std::string describeSubscription(const Instance& subscription) {
    return "subscription of " + describe(*referenceOf(subscription, "Handler")) + " to " +
           describe(*referenceOf(subscription, "Filter"));
}

/// What the subscription refers to. A reference without a namespace stays in the subscription's.
ObjectPath endOf(const Instance& subscription, std::string_view property) {
    ObjectPath path = *referenceOf(subscription, property);
    if (path.nameSpace.empty()) path.nameSpace = subscription.path.nameSpace;
    return path;
}

bool leadsToConsole(const Instance& destination) { return judgeDestination(destination).isConsole; }

}  // namespace

Subscriptions::Subscriptions(Broker& broker, ModuleHost& modules, IndicationRoutes& routes,
                             IndicationOutlet& outlet, std::chrono::milliseconds longestWait)
    : _broker(broker),
      _interop(interopNameSpaces(broker.repository())),
      _routes(routes),
      _outlet(outlet),
      _activation(broker, modules),
      _longestWait(longestWait) {}

Subscriptions::~Subscriptions() {
    try {
        stop(std::chrono::hours(1));
    } catch (const std::exception& error) {
        _broker.log().write(BrokerLog::Level::error, "indications",
                            std::string("ending the subscriptions: ") + error.what());
    }
}

std::vector<Instance> Subscriptions::all(const NameSpace& nameSpace,
                                         std::string_view className) const {
    std::vector<Instance> found;
    const auto add = [&](const auto& parts) {
        for (const auto& part : parts) {
            const Instance& instance = part.instance;
            if (equalNames(instance.path.nameSpace, nameSpace.name()) &&
                nameSpace.isA(instance.className(), className)) {
                found.push_back(instance);
            }
        }
    };
    {
        const std::lock_guard lock(_mutex);
        add(_filters);
        add(_destinations);
        add(_subscriptions);
        for (const Subscription& each : _subscriptions) {
            if (each.isRefused) showDisabled(nameSpace, each.instance.path, found);
        }
    }
    const Class* const service = nameSpace.findClass("CIM_IndicationService");
    if (service && nameSpace.isA(service->name, className)) {
        found.push_back(indicationService(nameSpace, _outlet.manner(), _outlet.counts()));
    }
    return found;
}

bool Subscriptions::serves(const Target& target) const noexcept {
    const auto isHere = [&](const NameSpace* each) {
        return equalNames(each->name(), target.nameSpace.name());
    };
    if (std::ranges::none_of(_interop, isHere)) return false;
    return findNamed(subscriptionClasses, target.definition.name) != nullptr;
}

void Subscriptions::visit(const Target& target, const VisitInstance& visit) const {
    for (const Instance& instance : all(target.nameSpace, target.definition.name)) {
        visit(instance, *target.nameSpace.findClass(instance.className()));
    }
}

void Subscriptions::visitAssociations(const Target& end, const VisitInstance& visit) const {
    const auto part = partOf(end.nameSpace, end.definition.name);
    if (part != SubscriptionPart::filter && part != SubscriptionPart::destination) return;
    const Class* const subscription = end.nameSpace.findClass("CIM_IndicationSubscription");
    if (subscription) this->visit({end.nameSpace, *subscription}, visit);
}

std::optional<Instance> Subscriptions::find(const ObjectPath& path) const {
    for (Instance& instance : all(repository().get(path.nameSpace), path.className)) {
        if (isAt(instance, path)) return std::move(instance);
    }
    return std::nullopt;
}

void Subscriptions::_setRoutes() {
    std::vector<std::shared_ptr<const IndicationRoute>> routes;
    for (const Subscription& subscription : _subscriptions) {
        if (subscription.route) routes.push_back(subscription.route);
    }
    _routes.set(std::move(routes));
}

void Subscriptions::_save() {
    if (!_file || _isRestoring) return;
    std::vector<Instance> instances;
    const auto add = [&](const Part& part) {
        if (!part.isStatic) instances.push_back(part.instance);
    };
    for (const Filter& each : _filters) add(each);
    for (const Destination& each : _destinations) {
        if (!leadsToConsole(each.instance)) add(each);
    }
    for (const Subscription& each : _subscriptions) {
        if (!leadsToConsole(each.destination->instance)) add(each);
    }
    replaceFile(*_file, formatSubscriptions(instances));
}

// Between activateFilter and enableIndications the route is laid, so that nothing is lost that a
// provider raises as soon as it may.
void Subscriptions::_activate(const RequestContext& request, Subscription& subscription) {
    Filter& filter = *subscription.filter;
    Destination& destination = *subscription.destination;
    // Before a provider is told anything: this may be refused.
    if (!destination.queue) {
        destination.queue = _outlet.open(nameOf(destination.instance), destination.url);
    }
    if (filter.activeSubscribers == 0) {
        filter.active = _activation.activate(request, filter.meaning);
    }
    ++filter.activeSubscribers;
    subscription.route = std::make_shared<const IndicationRoute>(
        IndicationRoute{filter.meaning.nameSpaces, filter.meaning.query, nameOf(filter.instance),
                        selectionOf(*filter.meaning.query), destination.queue});
    _setRoutes();
    _activation.enable(request, *filter.active);
}

void Subscriptions::_deactivate(const RequestContext& request,
                                Subscription& subscription) noexcept {
    if (!subscription.route) return;
    Filter& filter = *subscription.filter;
    subscription.route.reset();
    // Its provider first: what it raises before it stops is still delivered.
    if (--filter.activeSubscribers == 0) {
        _activation.deactivate(request, *filter.active);
        filter.active.reset();
    }
    _setRoutes();
}

ObjectPath Subscriptions::create(const RequestContext& request, const Instance& instance) {
    const Change change(*this);
    Instance complete = completeInstance(repository().get(instance.path.nameSpace), instance);
    const SubscriptionPart part =
        partOf(repository().get(complete.path.nameSpace), complete.className())
            .value_or(SubscriptionPart::service);
    _add(request, std::move(complete), false);
    try {
        _save();
    } catch (const std::exception& error) {
        _removeLast(request, part);
        throw CimError(CimCode::failed, error.what());
    }
    const std::lock_guard lock(_mutex);
    if (part == SubscriptionPart::filter) return _filters.back().instance.path;
    if (part == SubscriptionPart::destination) return _destinations.back().instance.path;
    return _subscriptions.back().instance.path;
}

void Subscriptions::_add(const RequestContext& request, Instance instance, bool isStatic) {
    const auto part = partOf(repository().get(instance.path.nameSpace), instance.className());
    if (part == SubscriptionPart::filter) return _addFilter(std::move(instance), isStatic);
    if (part == SubscriptionPart::destination) {
        return _addDestination(std::move(instance), isStatic);
    }
    if (part == SubscriptionPart::subscription) {
        return _addSubscription(request, std::move(instance), isStatic);
    }
    refuseChange(instance.path);
}

namespace {

template <typename Parts>
void requireNew(const Parts& parts, const Instance& instance) {
    for (const auto& part : parts) {
        if (!isAt(part.instance, instance.path)) continue;
        throw CimError(CimCode::alreadyExists, "there is " + describe(instance.path) + " already");
    }
}

}  // namespace

void Subscriptions::_addFilter(Instance instance, bool isStatic) {
    requireNew(_filters, instance);
    requireRoom(_filters.size(), SubscriptionLimits::filters, "filters");
    Filter filter;
    filter.meaning = judgeFilter(repository(), instance);
    filter.instance = std::move(instance);
    filter.isStatic = isStatic;
    const std::lock_guard lock(_mutex);
    _filters.push_back(std::move(filter));
}

void Subscriptions::_addDestination(Instance instance, bool isStatic) {
    requireNew(_destinations, instance);
    requireRoom(_destinations.size(), SubscriptionLimits::destinations, "destinations");
    Destination destination;
    destination.url = judgeDestination(instance);
    destination.instance = std::move(instance);
    destination.isStatic = isStatic;
    const std::lock_guard lock(_mutex);
    _destinations.push_back(std::move(destination));
}

void Subscriptions::_addSubscription(const RequestContext& request, Instance instance,
                                     bool isStatic) {
    judgeSubscription(instance);
    const ObjectPath filterPath = completePath(repository(), endOf(instance, "Filter"));
    const ObjectPath handlerPath = completePath(repository(), endOf(instance, "Handler"));
    Subscription subscription;
    subscription.filter = _find(_filters, filterPath);
    if (!subscription.filter) refuseMissing(filterPath);
    subscription.destination = _find(_destinations, handlerPath);
    if (!subscription.destination) refuseMissing(handlerPath);
    instance.set("Filter", Value::reference(subscription.filter->instance.path));
    instance.set("Handler", Value::reference(subscription.destination->instance.path));

    const NameSpace& nameSpace = repository().get(instance.path.nameSpace);
    instance = completeInstance(nameSpace, std::move(instance));
    requireNew(_subscriptions, instance);
    requireRoom(_subscriptions.size(), SubscriptionLimits::subscriptions, "subscriptions");
    for (const char* const moment : {"SubscriptionStartTime", "TimeOfLastStateChange"}) {
        if (!instance.find(moment)) setDeclared(nameSpace, instance, moment, now());
    }
    if (!instance.find("SubscriptionState")) {
        setDeclared(nameSpace, instance, "SubscriptionState",
                    Value::unsignedInteger(CimType::uint16, 2));
    }
    subscription.instance = std::move(instance);
    subscription.isStatic = isStatic;
    {
        const std::lock_guard lock(_mutex);
        _subscriptions.push_back(std::move(subscription));
        ++_subscriptions.back().filter->subscribers;
        ++_subscriptions.back().destination->subscribers;
    }
    Subscription& added = _subscriptions.back();
    if (!isEnabled(added.instance)) return;
    try {
        _activate(request, added);
    } catch (const std::exception& error) {
        if (!_isRestoring) {
            _removeLast(request, SubscriptionPart::subscription);
            throw;
        }
        _broker.log().write(BrokerLog::Level::error, "indications",
                            describeSubscription(added.instance) + " is disabled: " + error.what());
        const std::lock_guard lock(_mutex);
        added.isRefused = true;
    }
}

void Subscriptions::_removeLast(const RequestContext& request, SubscriptionPart part) {
    if (part == SubscriptionPart::subscription) _deactivate(request, _subscriptions.back());
    const std::lock_guard lock(_mutex);
    if (part == SubscriptionPart::filter) {
        _filters.pop_back();
    } else if (part == SubscriptionPart::destination) {
        _destinations.pop_back();
    } else {
        --_subscriptions.back().filter->subscribers;
        --_subscriptions.back().destination->subscribers;
        _subscriptions.pop_back();
    }
}

void Subscriptions::_restoreStatic() {
    for (const NameSpace* const nameSpace : _interop) {
        for (const auto part : {SubscriptionPart::filter, SubscriptionPart::destination,
                                SubscriptionPart::subscription}) {
            for (const Instance& instance : nameSpace->instances()) {
                if (partOf(*nameSpace, instance.className()) != part) continue;
                try {
                    _add({}, completeInstance(*nameSpace, instance), true);
                } catch (const CimError& error) {
                    _broker.log().write(BrokerLog::Level::error, "indications",
                                        describe(instance.path) + ": " + error.what());
                }
            }
        }
    }
}

bool Subscriptions::_restoreFile(const std::filesystem::path& file) {
    const std::optional<std::string> text = readWholeFile(file);
    if (!text) return true;
    const std::string name = file.string();
    for (DeclaredInstance& each : parseSubscriptions(repository(), *text, name)) {
        atPosition(each.position, [&] {
            const Target target = requireTarget(repository(), {}, each.instance.path);
            Instance instance = declaredProperties(repository(), target, std::move(each.instance));
            _add({}, completeInstance(target.nameSpace, std::move(instance)), false);
        });
    }
    return !isOldForm(*text);
}

void Subscriptions::restore(const std::optional<std::filesystem::path>& file) {
    const Change change(*this);
    _isRestoring = true;
    _restoreStatic();
    const bool isCurrent = !file || _restoreFile(*file);
    _isRestoring = false;
    _file = file;
    if (!isCurrent) _save();
}

bool Subscriptions::stop(std::chrono::milliseconds patience) {
    const Change change(*this, patience);
    if (!change.holds()) return false;
    _isStopped = true;
    for (Subscription& subscription : _subscriptions) _deactivate({}, subscription);
    return true;
}

void Subscriptions::renewActivations() {
    const Change change(*this);
    for (Filter& filter : _filters) {
        if (!filter.active || !_activation.isLeaving(*filter.active)) continue;
        const RequestContext request;
        try {
            // The new one first: what happens meanwhile is told twice rather than never.
            const auto next = _activation.activate(request, filter.meaning);
            const auto old = std::exchange(filter.active, next);
            _activation.enable(request, *next);
            _activation.deactivate(request, *old);
        } catch (const CimError& error) {
            _broker.log().write(BrokerLog::Level::warning, "indications",
                                describe(filter.instance.path) +
                                    " stays with the module of before: " + error.what());
        }
    }
}

}  // namespace cimhost
