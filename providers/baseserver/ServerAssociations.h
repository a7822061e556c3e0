#pragma once

#include "providers/baseserver/PciBus.h"
#include "toolkit/TwoEndedAssociation.h"

#include <memory>

namespace baseserver {

/// PYL_SystemPCIDevice: the computer system and one of its PCI devices.
std::unique_ptr<PYL::TwoEndedAssociation> systemPciDevice(const PciAddress& address);

/// PYL_ComputerSystemPackage: the chassis and the computer system in it.
std::unique_ptr<PYL::TwoEndedAssociation> computerSystemPackage();

}  // namespace baseserver
