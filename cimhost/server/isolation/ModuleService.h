#pragma once

#include "cimhost/client/CimXmlClient.h"
#include "cimhost/modules/ModuleHost.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/operations/Operations.h"
#include "cimhost/server/isolation/Link.h"
#include "cimhost/server/isolation/LinkMessage.h"

#include <chrono>
#include <filesystem>
#include <vector>

namespace cimhost {

/// A module in a process of its own: its providers answer what comes over the link, and what they
/// ask and raise goes back over it.
class ModuleService {
public:
    /// The repository is complete; it and the log outlive this.
    ModuleService(const Repository& repository, Registrations registrations,
                  std::vector<std::filesystem::path> folders, BrokerLog& log, const Manner& manner,
                  Descriptor control);

    /// Returns when the other side has ended.
    void serve();

    /// Cleans up and unloads. False when a call did not end in time: this object must not be
    /// destroyed then.
    bool shutDown(std::chrono::milliseconds patience);

private:
    /// The operations of the other side, for providers here.
    class UpCallClient final : public CimXmlClient {
    public:
        UpCallClient(ClientTransport& transport, const Repository& repository);

        Value getProperty(const RequestContext&, const ObjectPath&,
                          std::string_view property) override;
        void setProperty(const RequestContext&, const ObjectPath&, std::string_view property,
                         Value value) override;

    private:
        const Repository& _repository;
    };

    /// Brings indications to the other side.
    class Exporter final : public IndicationSink {
    public:
        Exporter(ClientTransport& transport, const Repository& repository)
            : _transport(transport), _repository(repository) {}

        void deliver(const RequestContext& context, std::string_view nameSpace,
                     const Instance& indication) override;

    private:
        ClientTransport& _transport;
        const Repository& _repository;
    };

    Broker _broker;
    LinkHandler _handler;
    Link _link;
    ClientTransport _transport;
    UpCallClient _upCalls;
    Exporter _exporter;
    ModuleHost _modules;
};

}  // namespace cimhost
