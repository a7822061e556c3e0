#pragma once

#include <functional>
#include <memory>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiMethodProvider.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "platform/logger/Logger.h"
#include "providers/consolidatedstatus/StatusBoard.h"

namespace consolidatedstatus {

/// Takes the statuses that other providers post to the host computer system by its method
/// PostStatus, and shows them: one instance for each class that posted, and one for the worst of
/// them. What was posted lasts as long as the object manager runs.
class ConsolidatedStatusProvider : public CmpiCpp::CmpiInstanceProvider,
                                   public CmpiCpp::CmpiMethodProvider {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    ConsolidatedStatusProvider(CmpiCpp::CmpiBroker const& broker, Logger& log,
                               Clock now = std::chrono::system_clock::now);

    CMPIBroker* getBroker() override;

    void enumInstanceNames(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                           CmpiCpp::CmpiObjectPathResult& result) override;
    void enumInstances(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                       char const** properties, CmpiCpp::CmpiInstanceResult& result) override;
    void getInstance(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                     char const** properties, CmpiCpp::CmpiInstanceResult& result) override;

    /// PostStatus(ClassName, Status). Throws CMPI_RC_ERR_INVALID_PARAMETER for arguments that are
    /// missing, of another type or no class name, CMPI_RC_ERR_FAILED when the board is full.
    void invokeMethod(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                      CmpiCpp::CmpiName const& methodName, CmpiCpp::CmpiArgs const& in,
                      CmpiCpp::CmpiMethodResult& result) override;

private:
    void add(std::string const& reportingClass);
    void list(std::string const& reportingClass);
    void post(CmpiCpp::CmpiArgs const& in);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    Clock _now;
    std::shared_ptr<StatusBoard> _board = std::make_shared<StatusBoard>();
    PYL::CmpiManagedInstanceCollection _collection;
};

}  // namespace consolidatedstatus
