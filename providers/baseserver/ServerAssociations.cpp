#include "providers/baseserver/ServerAssociations.h"

#include "common/PYLUtil.h"

namespace baseserver {

using PYL::AssociationClass;
using PYL::PYLUtil;
using PYL::TwoEndedAssociation;

namespace {

constexpr AssociationClass deviceClass{"PYL_SystemPCIDevice", "GroupComponent", "PartComponent"};
constexpr AssociationClass packageClass{"PYL_ComputerSystemPackage", "Antecedent", "Dependent"};

CmpiCpp::CmpiObjectPath chassis() { return PYLUtil::getChassisPath(); }

}  // namespace

std::unique_ptr<TwoEndedAssociation> systemPciDevice(const PciAddress& address) {
    return std::make_unique<TwoEndedAssociation>(
        deviceClass, PYLUtil::getComputerSystemPath, [address] {
            return PYLUtil::getPCIDevicePath(address.domain, address.bus, address.device,
                                             address.function);
        });
}

std::unique_ptr<TwoEndedAssociation> computerSystemPackage() {
    return std::make_unique<TwoEndedAssociation>(packageClass, chassis,
                                                 PYLUtil::getComputerSystemPath);
}

}  // namespace baseserver
