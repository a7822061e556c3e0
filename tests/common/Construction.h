#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiProvider.h"
#include "platform/logger/Logger.h"

/// What the factories below make or throw, and what they were given.
struct Construction {
    CmpiCpp::CmpiProvider* product = nullptr;
    void (*raise)() = nullptr;
    const CmpiCpp::CmpiBroker* broker = nullptr;
    Logger* logger = nullptr;
    const CMPIContext* context = nullptr;
};
inline Construction construction;

inline CmpiCpp::CmpiProvider* makeProvider(const CmpiCpp::CmpiBroker& broker, Logger& logger) {
    construction.broker = &broker;
    construction.logger = &logger;
    logger.info("in the factory");
    if (construction.raise) construction.raise();
    return construction.product;
}

inline CmpiCpp::CmpiProvider* makeProviderWithContext(const CmpiCpp::CmpiBroker& broker,
                                                      Logger& logger, const CMPIContext* context) {
    construction.context = context;
    return makeProvider(broker, logger);
}
