#pragma once

#include <string>

#include "cmpicpp/CmpiIndicationProvider.h"

namespace alerts {

/// An indication provider that watches while indications are enabled, and until it is cleaned up.
/// Every filter is welcome: the object manager picks what it selects. Nothing has to be polled.
class WatchingProvider : public CmpiCpp::CmpiIndicationProvider {
public:
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

protected:
    /// Either may come twice in a row.
    virtual void startWatching(CmpiCpp::CmpiContext const& context) = 0;
    virtual void stopWatching() = 0;
};

}  // namespace alerts
