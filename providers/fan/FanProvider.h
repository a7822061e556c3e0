#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <vector>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiIndicationProvider.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "platform/logger/Logger.h"
#include "providers/alerts/AlertSource.h"
#include "providers/alerts/AlertThread.h"
#include "providers/fan/FanEvents.h"
#include "providers/fan/FanSensors.h"

namespace fan {

/// Reports the server's fans and their group, read afresh for each request, and while indications
/// are enabled what happens to them. A change of the group's state is posted to the consolidated
/// status. Read-only.
class FanProvider : public CmpiCpp::CmpiInstanceProvider, public CmpiCpp::CmpiIndicationProvider {
public:
    using Source = std::function<std::vector<Fan>()>;

    FanProvider(
        CmpiCpp::CmpiBroker const& broker, Logger& log, Source source = [] { return readFans(); });

    CMPIBroker* getBroker() override;

    void enumInstanceNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                       char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;

    // Every filter is welcome: the object manager picks what it selects. Nothing has to be polled.
    void authorizeFilter(CmpiCpp::CmpiContext const& context, CMPISelectExp const* filter,
                         std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                         std::string const& owner) override;
    void mustPoll(CmpiCpp::CmpiContext const& context, CMPISelectExp const* filter,
                  std::string const& className, CmpiCpp::CmpiObjectPath const& path) override;
    void activateFilter(CmpiCpp::CmpiContext const& context, CMPISelectExp const* filter,
                        std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                        bool last) override;
    void deactivateFilter(CmpiCpp::CmpiContext const& context, CMPISelectExp const* filter,
                          std::string const& className, CmpiCpp::CmpiObjectPath const& path,
                          bool last) override;
    void enableIndications(CmpiCpp::CmpiContext const& context) override;
    void disableIndications(CmpiCpp::CmpiContext const& context) override;

    void cleanup(CmpiCpp::CmpiContext const& context, bool terminating) override;

    /// One look at the fans, as the watching thread does it.
    void look(CmpiCpp::CmpiContext const& context);

private:
    /// Calls with a collection of the fans as they are now.
    template <typename Call>
    auto withFans(Call call);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    Source _source;
    alerts::AlertSource _alerts;
    std::mutex _looking;
    FanEvents _events;
    std::optional<PYL::operationalStatus> _posted;
    alerts::AlertThread _thread;  // last: its looks use the others
};

}  // namespace fan
