#include "providers/fan/FanProvider.h"

#include "common/PYLUtil.h"
#include "providers/fan/FanInstance.h"
#include "toolkit/StatusProperties.h"

#include <memory>

namespace fan {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiObjectPath;

namespace {

constexpr std::chrono::seconds lookPeriod{2};

}  // namespace

FanProvider::FanProvider(const CmpiCpp::CmpiBroker& broker, Logger& log, Source source)
    : CollectionProvider(broker, log),
      _source(std::move(source)),
      _alerts(broker, log, "PYL_FanIndication"),
      _thread(broker, log, lookPeriod, [this](const CmpiContext& context) { look(context); }) {}

void FanProvider::answer(const CmpiContext&, const CmpiObjectPath&, const Ask& ask) {
    const auto fans = _source();
    Collection collection(_log);
    for (const auto& fan : fans) add(collection, std::make_unique<FanInstance>(fan));
    add(collection, std::make_unique<FanGroupInstance>(PYL::worstStatus(fans, statusOf)));
    ask(collection);
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
    const auto worst = PYL::worstStatus(fans, statusOf);
    if (_posted == worst) return;
    PYL::PYLUtil::postStatus(_log, context, FanGroupInstance(worst).getInstance());
    _posted = worst;
}

}  // namespace fan
