#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiModule.h"
#include "cmpicpp/CmpiObjectPath.h"

#include <cstddef>
#include <string>

/// What the rows need of a device and how the wrapper makes it.
struct WrapperDevice {
    std::string host;
    std::string nameSpace;
    std::string className;
    std::string deviceId;
    unsigned slot;

    CmpiCpp::CmpiObjectPath path() const;
    CmpiCpp::CmpiInstance instance() const;
};

/// The provider of PlainProvider.h once more, on the support library: managed instances in a
/// collection, reached through the MI tables that the adapter makes. The log is off.
class WrapperProvider {
public:
    /// `devices` devices, the last `links` of which belong to the system.
    WrapperProvider(std::size_t devices, std::size_t links);
    ~WrapperProvider();
    WrapperProvider(const WrapperProvider&) = delete;
    WrapperProvider& operator=(const WrapperProvider&) = delete;

    CMPIInstanceMI* instanceMI() const noexcept { return _instanceMI; }
    CMPIAssociationMI* associationMI() const noexcept { return _associationMI; }

private:
    CmpiCpp::CmpiModule _module;
    CMPIInstanceMI* _instanceMI;
    CMPIAssociationMI* _associationMI;
};
