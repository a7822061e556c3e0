#pragma once

#include "common/CmpiManagedInstance.h"
#include "common/OpstatusUtils.h"
#include "providers/baseserver/PciBus.h"
#include "providers/baseserver/ServerFacts.h"

#include <memory>

namespace baseserver {

/// PYL_ComputerSystem: the host itself.
class ComputerSystemInstance : public PYL::CmpiManagedInstance {
public:
    explicit ComputerSystemInstance(std::shared_ptr<const ServerFacts> facts)
        : _facts(std::move(facts)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    std::shared_ptr<const ServerFacts> _facts;
};

/// PYL_ComputerSystemChassis: what the host is built into.
class ChassisInstance : public PYL::CmpiManagedInstance {
public:
    explicit ChassisInstance(std::shared_ptr<const ServerFacts> facts) : _facts(std::move(facts)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    std::shared_ptr<const ServerFacts> _facts;
};

/// PYL_PCIDevice: one PCI function.
class PciDeviceInstance : public PYL::CmpiManagedInstance {
public:
    /// `name`: the device's, where the host knows it.
    explicit PciDeviceInstance(PciFunction function, std::optional<std::string> name = {})
        : _function(std::move(function)), _name(std::move(name)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    PciFunction _function;
    std::optional<std::string> _name;
};

/// What a function's errors say of its state.
PYL::operationalStatus statusOf(const PciFunction& function) noexcept;

/// PYL_PCIDeviceGroup: all PCI devices of the server, with the worst of their states.
class PciDeviceGroupInstance : public PYL::CmpiManagedInstance {
public:
    explicit PciDeviceGroupInstance(PYL::operationalStatus worst) : _worst(worst) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    PYL::operationalStatus _worst;
};

}  // namespace baseserver
