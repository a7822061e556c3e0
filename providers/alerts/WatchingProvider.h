#pragma once

#include "cmpicpp/CmpiIndicationProvider.h"

#include <string>

namespace alerts {

/// An indication provider that watches while indications are enabled, and until it is cleaned up.
/// Every filter is welcome: the object manager picks what it selects. Nothing has to be polled.
class WatchingProvider : public CmpiCpp::CmpiIndicationProvider {
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
    /// Either may come twice in a row.
    virtual void startWatching(const CmpiCpp::CmpiContext& context) = 0;
    virtual void stopWatching() = 0;
};

}  // namespace alerts
