#include "cimhost/objects/AttachedThreads.h"

#include "cimhost/objects/ContextHandle.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/MannerTables.h"

namespace cimhost {

namespace {

// What this thread is attached with.
constinit thread_local const CMPIContext* attachedContext = nullptr;
constinit thread_local const ObjectScope* attachedScope = nullptr;

CMPIContext* prepareAttachThread(const CMPIBroker* handle, const CMPIContext* context) noexcept {
    return enter(handle, nullptr,
                 [&](const Broker& broker) { return broker.preparedContexts().prepare(context); });
}

CMPIStatus attachThread(const CMPIBroker* handle, const CMPIContext* context) noexcept {
    return enter(handle, [&](const Broker& broker) { broker.preparedContexts().attach(context); });
}

CMPIStatus detachThread(const CMPIBroker* handle, const CMPIContext* context) noexcept {
    return enter(handle, [&](const Broker& broker) {
        broker.preparedContexts().detach(
            context, broker.manner().has(Habit::freesNothingOfThreadsBeforeTheirEnd));
    });
}

CMPIStatus deliverIndication(const CMPIBroker* handle, const CMPIContext* context,
                             const char* nameSpace, const CMPIInstance* indication) noexcept {
    return enter(handle, [&](const Broker& broker, CMPIrc& code) {
        const RequestContext& request = requiredObject<ContextObject>(context).request;
        const Instance& instance = requiredObject<InstanceObject>(indication).complete();
        const std::string_view origin = required(nameSpace);
        if (IndicationSink* const sink = broker.indicationSink()) {
            sink->deliver(request, origin, instance);
        } else {
            code = CMPI_RC_ERR_NOT_SUPPORTED;
        }
    });
}

CMPIStatus deliverByManner(const CMPIBroker* handle, const CMPIContext* context,
                           const char* nameSpace, const CMPIInstance* indication) noexcept {
    const Broker* const broker = Broker::find(handle);
    if (!broker) return deliverIndication(handle, context, nameSpace, indication);
    const Manner& manner = broker->manner();
    if (!context && manner.has(Habit::crashesWithoutContext)) {
        endAs(*broker, Habit::crashesWithoutContext);
    }
    const CMPIStatus status = deliverIndication(handle, context, nameSpace, indication);
    if (manner.has(Habit::cutsIndicationsInPlace)) {
        static const char* nothing[] = {nullptr};
        InstanceObject::table.setPropertyFilter(indication, nothing, nullptr);
    }
    return manner.has(Habit::takesEveryIndication) ? CMPIStatus{CMPI_RC_OK, nullptr} : status;
}

}  // namespace

PreparedContexts::~PreparedContexts() {
    for (const auto& [context, attached] : _contexts) _end(context);
}

CMPIContext* PreparedContexts::prepare(const CMPIContext* context) {
    const ContextObject& original = requiredObject<ContextObject>(context);
    ContextObject& copy = makeClone<ContextObject>(*original.broker, 0, original);
    // Not for the provider to release: detaching ends it.
    copy.origin = Origin::broker;
    try {
        const std::lock_guard lock(_mutex);
        _contexts.emplace(&copy, false);
    } catch (...) {
        endObject(copy);
        throw;
    }
    return &copy;
}

void PreparedContexts::attach(const CMPIContext* context) {
    // A scope that is gone was ended by the call it was begun in, without detaching.
    if (attachedContext && ObjectScope::find(attachedScope)) throw Failure{CMPI_RC_ERR_FAILED};
    const std::lock_guard lock(_mutex);
    const auto found = _contexts.find(context);
    if (found == _contexts.end() || found->second) throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
    attachedScope = ObjectScope::begin(ObjectScope::Kind::attached);
    attachedContext = context;
    found->second = true;
}

void PreparedContexts::detach(const CMPIContext* context, bool keepsObjects) {
    if (!context || context != attachedContext) throw Failure{CMPI_RC_ERR_INVALID_HANDLE};
    const ObjectScope* const scope = ObjectScope::find(attachedScope);
    if (scope && !keepsObjects) ObjectScope::end(scope);
    attachedContext = nullptr;
    attachedScope = nullptr;
    const std::lock_guard lock(_mutex);
    if (_contexts.erase(context) != 0) _end(context);
}

void PreparedContexts::_end(const CMPIContext* context) noexcept {
    if (ContextObject* const object = findObject<ContextObject>(context)) endObject(*object);
}

void adaptIndications(CMPIBrokerFT& table, const Manner& manner) noexcept {
    if (manner.has(Habit::crashesWithoutContext) || manner.has(Habit::cutsIndicationsInPlace) ||
        manner.has(Habit::takesEveryIndication)) {
        table.deliverIndication = deliverByManner;
    }
}

void fillThreadsAndIndications(CMPIBrokerFT& table) {
    table.prepareAttachThread = prepareAttachThread;
    table.attachThread = attachThread;
    table.detachThread = detachThread;
    table.deliverIndication = deliverIndication;
}

}  // namespace cimhost
