#pragma once

#include "platform/logger/Logger.h"
#include "providers/consolidatedstatus/StatusBoard.h"
#include "toolkit/CollectionProvider.h"

#include <functional>
#include <memory>

namespace consolidatedstatus {

/// Takes the statuses that other providers post and shows them: one instance for each class that
/// posted, and one for the worst of them. Providers post to the host computer system; who serves
/// that hands the posts on, to the method PostStatus here. What was posted lasts as long as the
/// object manager runs.
class ConsolidatedStatusProvider : public PYL::CollectionProvider {
public:
    using Clock = std::function<std::chrono::system_clock::time_point()>;

    ConsolidatedStatusProvider(const CmpiCpp::CmpiBroker& broker, Logger& log,
                               Clock now = std::chrono::system_clock::now);

    /// Not now, once something was posted.
    int unloadOK(const CmpiCpp::CmpiContext& context) override;

    /// PostStatus(ClassName, Status). Throws CMPI_RC_ERR_INVALID_PARAMETER for arguments that are
    /// missing, of another type or no class name, CMPI_RC_ERR_FAILED when the board is full.
    void invokeMethod(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                      const CmpiCpp::CmpiName& methodName, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& result) override;

private:
    void _list(const std::string& reportingClass);
    void _post(const CmpiCpp::CmpiArgs& in);

    Clock _now;
    std::shared_ptr<StatusBoard> _board = std::make_shared<StatusBoard>();
};

}  // namespace consolidatedstatus
