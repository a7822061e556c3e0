#pragma once

#include "cmpicpp/CmpiObjectPath.h"
#include "common/CmpiManagedInstance.h"
#include "providers/baseserver/PciBus.h"

namespace baseserver {

/// A link between two objects of this server, by the names of its two reference properties.
class TwoEndedAssociation : public PYL::CmpiManagedInstanceAssociation {
public:
    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override { return _className; }
    CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath& path) override;

protected:
    /// The names must outlive the object: literals.
    TwoEndedAssociation(const char* className, const char* firstRole, const char* secondRole)
        : _className(className), _firstRole(firstRole), _secondRole(secondRole) {}

    virtual CmpiCpp::CmpiObjectPath firstEnd() = 0;
    virtual CmpiCpp::CmpiObjectPath secondEnd() = 0;

private:
    const char* _className;
    const char* _firstRole;
    const char* _secondRole;
};

/// PYL_SystemPCIDevice: the computer system and one of its PCI devices.
class SystemPciDeviceAssociation : public TwoEndedAssociation {
public:
    explicit SystemPciDeviceAssociation(PciAddress address);

protected:
    CmpiCpp::CmpiObjectPath firstEnd() override;
    CmpiCpp::CmpiObjectPath secondEnd() override;

private:
    PciAddress _address;
};

/// PYL_ComputerSystemPackage: the chassis and the computer system in it.
class ComputerSystemPackageAssociation : public TwoEndedAssociation {
public:
    ComputerSystemPackageAssociation();

protected:
    CmpiCpp::CmpiObjectPath firstEnd() override;
    CmpiCpp::CmpiObjectPath secondEnd() override;
};

}  // namespace baseserver
