#include "toolkit/WatchingProvider.h"

#include "cmpicpp/CmpiStatus.h"

namespace PYL {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiObjectPath;

void WatchingProvider::authorizeFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                                       const CmpiObjectPath&, const std::string&) {}

void WatchingProvider::mustPoll(const CmpiContext&, const CMPISelectExp*, const std::string&,
                                const CmpiObjectPath&) {
    throw CmpiCpp::CmpiStatus(CMPI_RC_ERR_NOT_SUPPORTED, "nothing has to be polled");
}

void WatchingProvider::activateFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                                      const CmpiObjectPath&, bool) {}

void WatchingProvider::deactivateFilter(const CmpiContext&, const CMPISelectExp*,
                                        const std::string&, const CmpiObjectPath&, bool) {}

void WatchingProvider::enableIndications(const CmpiContext& context) { startWatching(context); }

void WatchingProvider::disableIndications(const CmpiContext&) { stopWatching(); }

void WatchingProvider::cleanup(const CmpiContext&, bool) { stopWatching(); }

}  // namespace PYL
