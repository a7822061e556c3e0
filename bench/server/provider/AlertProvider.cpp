// Raises alerts on request, as many as it is told, one after the other: each is built by the
// support library and handed to the object manager.
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiMBService.h"
#include "cmpicpp/CmpiMemoryMark.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/KTAlertIndication.h"
#include "common/PYLUtil.h"
#include "platform/logger/Logger.h"

#include <string>

namespace {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiObjectPath;

constexpr const char* nameSpace = "root/bench";

class NoLines : public LogSink {
public:
    void write(LogLevel, std::string_view, std::string_view) noexcept override {}
};

class AlertProvider : public CmpiCpp::CmpiMethodProvider, public CmpiCpp::CmpiIndicationProvider {
public:
    explicit AlertProvider(const CmpiCpp::CmpiBroker& broker) : _broker(broker) {}

    CMPIBroker* getBroker() override { return _broker.toRawCMPI(); }

    void invokeMethod(const CmpiContext& context, const CmpiObjectPath&, const CmpiCpp::CmpiName&,
                      const CmpiCpp::CmpiArgs& in, CmpiCpp::CmpiMethodResult& result) override {
        const auto count = in.getArg("Count").asUint64();
        for (unsigned long long i = 0; i < count; ++i) _raise(context);
        result.deliver(0U);
    }

    void authorizeFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                         const CmpiObjectPath&, const std::string&) override {}
    void mustPoll(const CmpiContext&, const CMPISelectExp*, const std::string&,
                  const CmpiObjectPath&) override {}
    void activateFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                        const CmpiObjectPath&, bool) override {}
    void deactivateFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                          const CmpiObjectPath&, bool) override {}
    void enableIndications(const CmpiContext&) override {}
    void disableIndications(const CmpiContext&) override {}

private:
    void _raise(const CmpiContext& context) {
        const CmpiCpp::CmpiMemoryMark mark(_broker);
        PYL::KTAlertIndication alert(_log, "KT_AlertIndication", nameSpace, 2);
        alert.setDescription("The fan has failed. Air may no longer flow as the server needs it.");
        alert.setSummary("Fan status changed to failed");
        alert.setEventID("3");
        alert.setProviderName("KT Cooling");
        alert.setHWPhysicalLocation("Fan bay 3");
        CmpiCpp::CmpiMBService(_broker.toCMPI(), _log)
            .deliverIndication(context, nameSpace, alert.getInstance());
    }

    CmpiCpp::CmpiBroker _broker;
    Logger _log{"bench", std::make_shared<NoLines>(), LogLevel::error};
};

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    PYL::PYLUtil::setBroker(broker);
    return new AlertProvider(broker);
}

}  // namespace

PYL_CMPI_PROVIDER(AlertProvider, makeProvider)
