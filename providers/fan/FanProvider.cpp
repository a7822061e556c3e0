#include "providers/fan/FanProvider.h"

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/fan/FanInstance.h"

#include <memory>

namespace fan {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiObjectPath;
using CmpiCpp::CmpiStatus;

namespace {

constexpr std::chrono::seconds lookPeriod{2};

void add(PYL::CmpiManagedInstanceCollection& collection,
         std::unique_ptr<PYL::CmpiManagedInstance> instance) {
    collection.createInstance(instance.get());
    static_cast<void>(instance.release());  // the collection owns it now
}

}  // namespace

FanProvider::FanProvider(const CmpiCpp::CmpiBroker& broker, Logger& log, Source source)
    : _broker(broker),
      _log(log),
      _source(std::move(source)),
      _alerts(broker, log, "PYL_FanIndication"),
      _thread(broker, log, lookPeriod, [this](const CmpiContext& context) { look(context); }) {}

CMPIBroker* FanProvider::getBroker() {
    return _broker.toRawCMPI();
}

template <typename Call>
auto FanProvider::_withFans(Call call) {
    const auto fans = _source();
    PYL::CmpiManagedInstanceCollection collection(_log);
    for (const auto& fan : fans) add(collection, std::make_unique<FanInstance>(fan));
    add(collection, std::make_unique<FanGroupInstance>(worstOf(fans)));
    return call(collection);
}

void FanProvider::enumInstanceNames(const CmpiContext& context, const CmpiObjectPath& path,
                                    CmpiCpp::CmpiObjectPathResult& result) {
    _withFans([&](auto& fans) { fans.enumInstanceNames(result, context, path); });
}

void FanProvider::enumInstances(const CmpiContext& context, const CmpiObjectPath& path,
                                const char** properties, CmpiCpp::CmpiInstanceResult& result) {
    _withFans([&](auto& fans) { fans.enumInstances(result, context, path, properties); });
}

void FanProvider::getInstance(const CmpiContext& context, const CmpiObjectPath& path,
                              const char** properties, CmpiCpp::CmpiInstanceResult& result) {
    const bool found =
        _withFans([&](auto& fans) { return fans.getInstance(result, context, path, properties); });
    if (!found) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
}

void FanProvider::look(const CmpiContext& context) {
    const std::lock_guard lock(_looking);
    const auto fans = _source();
    for (const auto& event : _events.since(fans)) {
        _alerts.raise(context, event.number, {}, [&](PYL::KTAlertIndication& alert) {
            alert.setHWLogicalLocation(event.fan.id);
            alert.setHWPhysicalLocation(event.fan.label);
            alert.setAlertingManagedElement(FanInstance(event.fan).getPath().str());
        });
    }
    const auto worst = worstOf(fans);
    if (_posted == worst) return;
    PYL::PYLUtil::postStatus(_log, context, FanGroupInstance(worst).getInstance());
    _posted = worst;
}

}  // namespace fan
