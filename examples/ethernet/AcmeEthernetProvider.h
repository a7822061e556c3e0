#pragma once

#include "toolkit/AlertSource.h"
#include "toolkit/AlertThread.h"
#include "toolkit/CollectionProvider.h"
#include "toolkit/WatchingProvider.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

/// A port as the kernel tells of it. Knows nothing of CIM.
struct AcmeEthernet {
    std::string name;
    std::string address;
    std::string state;
    std::optional<unsigned long long> megabits;
};

/// The Ethernet ports that are there now.
std::vector<AcmeEthernet> readEthernets();

/// Answers for ports, read afresh for each request, and tells of links that come and go.
class AcmeEthernetProvider : public PYL::CollectionProvider, public PYL::WatchingProvider {
public:
    AcmeEthernetProvider(const CmpiCpp::CmpiBroker& broker, Logger& log);

    /// One look at all links, as the watching thread does it.
    void look(const CmpiCpp::CmpiContext& context);

protected:
    void answer(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                const Ask& ask) override;
    void startWatching(const CmpiCpp::CmpiContext& context) override { _thread.start(context); }
    void stopWatching() override { _thread.stop(); }

private:
    PYL::AlertSource _alerts;
    std::map<std::string, bool> _links;  ///< which ports had one at the last look
    PYL::AlertThread _thread;            // last: its looks use the others
};
