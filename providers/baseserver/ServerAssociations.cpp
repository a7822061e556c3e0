#include "providers/baseserver/ServerAssociations.h"

#include "cmpicpp/CmpiInstance.h"
#include "common/PYLUtil.h"

namespace baseserver {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiName;
using CmpiCpp::CmpiObjectPath;
using PYL::PYLUtil;

CmpiObjectPath TwoEndedAssociation::getPath() {
    auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(PYLUtil::getBroker()),
                                            PYL::BaseServerNameSpace, _className);
    path.setHost(CmpiName(PYLUtil::getHostName()));
    path.addKey(_firstRole, firstEnd());
    path.addKey(_secondRole, secondEnd());
    return path;
}

CmpiInstance TwoEndedAssociation::getInstance() {
    auto instance = CmpiCpp::makeCmpiInstance(CmpiBroker(PYLUtil::getBroker()), getPath());
    instance.setProperty(_firstRole, firstEnd());
    instance.setProperty(_secondRole, secondEnd());
    return instance;
}

CmpiObjectPath TwoEndedAssociation::getAssociatedPath(const CmpiObjectPath& path) {
    auto first = firstEnd();
    auto second = secondEnd();
    if (path == first) return second;
    if (path == second) return first;
    return {};
}

SystemPciDeviceAssociation::SystemPciDeviceAssociation(PciAddress address)
    : TwoEndedAssociation("PYL_SystemPCIDevice", "GroupComponent", "PartComponent"),
      _address(address) {}

CmpiObjectPath SystemPciDeviceAssociation::firstEnd() {
    return PYLUtil::getComputerSystemPath();
}

CmpiObjectPath SystemPciDeviceAssociation::secondEnd() {
    return PYLUtil::getPCIDevicePath(_address.domain, _address.bus, _address.device,
                                     _address.function);
}

ComputerSystemPackageAssociation::ComputerSystemPackageAssociation()
    : TwoEndedAssociation("PYL_ComputerSystemPackage", "Antecedent", "Dependent") {}

CmpiObjectPath ComputerSystemPackageAssociation::firstEnd() {
    return PYLUtil::getChassisPath();
}

CmpiObjectPath ComputerSystemPackageAssociation::secondEnd() {
    return PYLUtil::getComputerSystemPath();
}

}  // namespace baseserver
