#include "providers/alerts/WatchingProvider.h"

#include "cmpicpp/CmpiStatus.h"

namespace alerts {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiObjectPath;

void WatchingProvider::authorizeFilter(CmpiContext const&, CMPISelectExp const*, std::string const&,
                                       CmpiObjectPath const&, std::string const&) {}

void WatchingProvider::mustPoll(CmpiContext const&, CMPISelectExp const*, std::string const&,
                                CmpiObjectPath const&) {
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, "nothing has to be polled");
}

void WatchingProvider::activateFilter(CmpiContext const&, CMPISelectExp const*, std::string const&,
                                      CmpiObjectPath const&, bool) {}

void WatchingProvider::deactivateFilter(CmpiContext const&, CMPISelectExp const*,
                                        std::string const&, CmpiObjectPath const&, bool) {}

void WatchingProvider::enableIndications(CmpiContext const& context) {
    startWatching(context);
}

void WatchingProvider::disableIndications(CmpiContext const&) {
    stopWatching();
}

void WatchingProvider::cleanup(CmpiContext const&, bool) {
    stopWatching();
}

}  // namespace alerts
