#include "providers/fan/FanProvider.h"

#include <memory>

#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"
#include "providers/fan/FanInstance.h"

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

FanProvider::FanProvider(CmpiCpp::CmpiBroker const& broker, Logger& log, Source source)
    : _broker(broker),
      _log(log),
      _source(std::move(source)),
      _alerts(broker, log, "PYL_FanIndication"),
      _thread(broker, log, lookPeriod, [this](CmpiContext const& context) { look(context); }) {}

CMPIBroker* FanProvider::getBroker() {
    return _broker.toRawCMPI();
}

template <typename Call>
auto FanProvider::withFans(Call call) {
    auto const fans = _source();
    PYL::CmpiManagedInstanceCollection collection(_log);
    for (auto const& fan : fans) add(collection, std::make_unique<FanInstance>(fan));
    add(collection, std::make_unique<FanGroupInstance>(worstOf(fans)));
    return call(collection);
}

void FanProvider::enumInstanceNames(CmpiContext const& context, CmpiObjectPath const& path,
                                    CmpiCpp::CmpiObjectPathResult& result) {
    withFans([&](auto& fans) { fans.enumInstanceNames(result, context, path); });
}

void FanProvider::enumInstances(CmpiContext const& context, CmpiObjectPath const& path,
                                char const** properties, CmpiCpp::CmpiInstanceResult& result) {
    withFans([&](auto& fans) { fans.enumInstances(result, context, path, properties); });
}

void FanProvider::getInstance(CmpiContext const& context, CmpiObjectPath const& path,
                              char const** properties, CmpiCpp::CmpiInstanceResult& result) {
    bool const found =
        withFans([&](auto& fans) { return fans.getInstance(result, context, path, properties); });
    if (!found) throw CmpiStatus(CMPI_RC_ERR_NOT_FOUND, "no such instance: " + path.str());
}

void FanProvider::look(CmpiContext const& context) {
    std::lock_guard const lock(_looking);
    auto const fans = _source();
    for (auto const& event : _events.since(fans))
        _alerts.raise(context, event.number, {}, [&](PYL::KTAlertIndication& alert) {
            alert.setHWLogicalLocation(event.fan.id);
            alert.setHWPhysicalLocation(event.fan.label);
            alert.setAlertingManagedElement(FanInstance(event.fan).getPath().str());
        });
    auto const worst = worstOf(fans);
    if (_posted == worst) return;
    PYL::PYLUtil::postStatus(_log, context, FanGroupInstance(worst).getInstance());
    _posted = worst;
}

}  // namespace fan
