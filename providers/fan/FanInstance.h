#pragma once

#include "common/CmpiManagedInstance.h"
#include "providers/fan/FanSensors.h"

namespace fan {

/// PYL_Fan: one fan, as it was read.
class FanInstance : public PYL::CmpiManagedInstance {
public:
    explicit FanInstance(Fan fan) : _fan(std::move(fan)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    Fan _fan;
};

/// PYL_FanGroup: all fans of the server, with the worst of their states.
class FanGroupInstance : public PYL::CmpiManagedInstance {
public:
    explicit FanGroupInstance(PYL::operationalStatus worst) : _worst(worst) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override;

private:
    PYL::operationalStatus _worst;
};

}  // namespace fan
