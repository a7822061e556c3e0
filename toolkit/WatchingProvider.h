#pragma once

#include "cmpicpp/CmpiIndicationProvider.h"
#include "pylcommon_export.h"

#include <string>

namespace PYL {

/// An indication provider that watches while indications are enabled, and until it is cleaned up.
/// Every filter is welcome: the object manager picks what it selects. Polling is refused with
/// CMPI_RC_ERR_NOT_SUPPORTED: nothing has to be polled.
///
///     class FanProvider : public CollectionProvider, public WatchingProvider {
///     ...
///     protected:
///         void startWatching(const CmpiContext& context) override { _thread.start(context); }
///         void stopWatching() override { _thread.stop(); }
class PYL_EXPORT WatchingProvider : public CmpiCpp::CmpiIndicationProvider {
public:
    void authorizeFilter(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,
                         const std::string& className, const CmpiCpp::CmpiObjectPath& path,
                         const std::string& owner) override;
    void mustPoll(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,
                  const std::string& className, const CmpiCpp::CmpiObjectPath& path) override;
    void activateFilter(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,
                        const std::string& className, const CmpiCpp::CmpiObjectPath& path,
                        bool last) override;
    void deactivateFilter(const CmpiCpp::CmpiContext& context, const CMPISelectExp* filter,
                          const std::string& className, const CmpiCpp::CmpiObjectPath& path,
                          bool last) override;
    void enableIndications(const CmpiCpp::CmpiContext& context) override;
    void disableIndications(const CmpiCpp::CmpiContext& context) override;
    void cleanup(const CmpiCpp::CmpiContext& context, bool terminating) override;

protected:
    /// Called on threads of the object manager that serve a request, from several at once if it
    /// likes. Either may come twice in a row. What it throws is the answer to the request.
    virtual void startWatching(const CmpiCpp::CmpiContext& context) = 0;
    /// What is watched has ended when this returns.
    virtual void stopWatching() = 0;
};

}  // namespace PYL
