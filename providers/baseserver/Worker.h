#pragma once

#include "common/CmpiManagedInstance.h"

namespace baseserver {

/// PYL_BaseServerWorker: by its method PerformWork the provider is told to do its periodic work.
/// Knows nothing of the hardware, so that it can be served before anything else is made.
class WorkerInstance : public PYL::CmpiManagedInstance {
public:
    static constexpr const char* className = "PYL_BaseServerWorker";

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override { return className; }
};

}  // namespace baseserver
