#pragma once

#include "cmpicpp/CmpiResult.h"
#include "platform/logger/Logger.h"

#include <memory>

/// Sinks that count and nothing else: they allocate nothing and call no broker.
struct CountedPaths : CmpiCpp::CmpiObjectPathResult {
    void deliver(const CmpiCpp::CmpiObjectPath&) override { ++count; }
    int count = 0;
};

struct CountedInstances : CmpiCpp::CmpiInstanceResult {
    void deliver(const CmpiCpp::CmpiInstance&) override { ++count; }
    int count = 0;
};

/// A sink that takes log lines and keeps none.
struct SilentSink : LogSink {
    void write(LogLevel, std::string_view, std::string_view) noexcept override {}
};

inline Logger silentLogger(LogLevel level = LogLevel::information) {
    return Logger("silent", std::make_shared<SilentSink>(), level);
}
