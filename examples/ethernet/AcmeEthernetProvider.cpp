#include "AcmeEthernetProvider.h"

#include "cmpicpp/CmpiModule.h"
#include "common/PYLUtil.h"
#include "platform/host/HostFiles.h"
#include "toolkit/LocalPaths.h"
#include "toolkit/LoggedModule.h"
#include "toolkit/Methods.h"
#include "toolkit/Properties.h"
#include "toolkit/StatusProperties.h"
#include "toolkit/TwoEndedAssociation.h"

#include <filesystem>

namespace {

using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;

constexpr const char* portsFolder = "/sys/class/net/";

enum Alert : int { linkUp = 1, linkDown = 2 };

constexpr PYL::AlertDefinition alerts[] = {
    {.number = linkUp,
     .eventID = "1",
     .providerName = "Acme Ethernet",
     .severity = PYL::severityInformational,
     .summary = "Link is up on port: "},
    {.number = linkDown,
     .eventID = "2",
     .providerName = "Acme Ethernet",
     .severity = PYL::severityMajor,
     .summary = "Link is down on port: ",
     .recommendedActions = "Check the cable and the switch."},
};

std::optional<unsigned long long> number(const std::string& file) {
    const auto line = HostFiles().line(file).value_or("");
    if (line.empty() || line.find_first_not_of("0123456789") != std::string::npos) return {};
    return std::stoull(line);
}

/// Devices of the kernel's own making, such as bridges, call their state unknown.
bool hasLink(const AcmeEthernet& port) { return port.state == "up" || port.state == "unknown"; }

constexpr PYL::AssociationClass systemClass{"ACME_SystemEthernet", "GroupComponent",
                                            "PartComponent"};

CmpiObjectPath pathOf(const std::string& port) {
    return PYL::makeDevicePath("ACME_Ethernet", port);
}

/// A port as clients see it.
class EthernetInstance : public PYL::CmpiManagedInstance {
public:
    explicit EthernetInstance(AcmeEthernet port) : _port(std::move(port)) {}

    CmpiName getClassName() override { return "ACME_Ethernet"; }

    CmpiObjectPath getPath() override { return pathOf(_port.name); }

    CmpiInstance getInstance() override {
        auto instance = PYL::makeInstanceAt(getPath());
        instance.setProperty("ElementName", _port.name);
        PYL::setKnown(instance, "PermanentAddress", _port.address);
        if (_port.megabits) instance.setProperty("Speed", *_port.megabits * 1'000'000);
        const auto status = hasLink(_port) ? PYL::statusOK : PYL::statusStopped;
        PYL::setDescribedStatus(instance, status);
        return instance;
    }

    void invokeMethod(const CmpiName& method, const CmpiCpp::CmpiArgs& in,
                      CmpiCpp::CmpiMethodResult& out) override {
        PYL::requireMethod(getPath(), method, "ACME_Ethernet", "ReadCounter");
        const auto name = PYL::PYLUtil::getArg(in, "Name", CMPI_string).asString();
        const auto isPath = name.find('/') != std::string::npos;  // would lead anywhere
        const auto count = number(portsFolder + _port.name + "/statistics/" + (isPath ? "" : name));
        if (count) out.deliver("Count", *count);
        out.deliver(count ? 0U : 1U);
    }

private:
    AcmeEthernet _port;
};

/// There before the provider is.
class WorkerInstance : public PYL::CmpiManagedInstance {
public:
    CmpiName getClassName() override { return "ACME_EthernetWorker"; }
    CmpiObjectPath getPath() override { return PYL::makeInstanceIdPath("ACME_EthernetWorker"); }
    CmpiInstance getInstance() override { return PYL::makeInstanceAt(getPath()); }
};

CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, const CMPIContext*) {
    return PYL::makeAutostartedProvider<AcmeEthernetProvider, WorkerInstance>(broker,
                                                                              "AcmeEthernet");
}

}  // namespace

std::vector<AcmeEthernet> readEthernets() {
    const HostFiles files;
    std::vector<AcmeEthernet> ports;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(hostRoot() + portsFolder, error)) {
        const auto name = entry.path().filename().string();
        const auto folder = portsFolder + name;
        if (files.line(folder + "/type") != "1") continue;  // ARPHRD_ETHER of linux/if_arp.h
        ports.push_back({name, files.line(folder + "/address").value_or(""),
                         files.line(folder + "/operstate").value_or(""),
                         number(folder + "/speed")});
    }
    return ports;
}

AcmeEthernetProvider::AcmeEthernetProvider(const CmpiCpp::CmpiBroker& broker, Logger& log)
    : CollectionProvider(broker, log),
      _alerts(broker, log, "ACME_EthernetIndication", alerts),
      _thread(broker, log, std::chrono::seconds(1),
              [this](const auto& context) { look(context); }) {}

void AcmeEthernetProvider::answer(const CmpiCpp::CmpiContext&, const CmpiObjectPath&,
                                  const Ask& ask) {
    Collection collection(_log);
    for (const auto& port : readEthernets()) {
        add(collection, std::make_unique<EthernetInstance>(port));
        add(collection, std::make_unique<PYL::TwoEndedAssociation>(
                            systemClass, PYL::PYLUtil::getComputerSystemPath,
                            [name = port.name] { return pathOf(name); }));
    }
    ask(collection);
}

void AcmeEthernetProvider::look(const CmpiCpp::CmpiContext& context) {
    for (const auto& port : readEthernets()) {
        const auto [before, isNew] = _links.try_emplace(port.name, hasLink(port));
        if (std::exchange(before->second, hasLink(port)) == hasLink(port)) continue;
        const auto event = hasLink(port) ? linkUp : linkDown;
        _alerts.raise(context, event, port.name, [&](PYL::KTAlertIndication& alert) {
            alert.setHWLogicalLocation(port.name);
            alert.setAlertingManagedElement(pathOf(port.name).str());
        });
    }
}

PYL_CMPI_PROVIDER(AcmeEthernetProvider, makeProvider)
