#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "platform/logger/Logger.h"
#include "providers/baseserver/BootRecord.h"
#include "toolkit/AlertSource.h"
#include "toolkit/AlertThread.h"

#include <chrono>
#include <functional>
#include <optional>

namespace baseserver {

/// The events of the server as a whole, while indications are enabled: that the providers have
/// started and that the operating system has booted, once each; heart beats while root's switch is
/// on; and the three test events when root triggers them.
class ServerWatch {
public:
    using Clock = std::function<std::chrono::steady_clock::time_point()>;

    /// How often a heart beat comes; and how often after root's trigger for the shorter interval.
    static constexpr std::chrono::seconds heartBeatInterval{60};
    static constexpr std::chrono::seconds shortInterval{5};

    ServerWatch(const CmpiCpp::CmpiBroker& broker, Logger& log,
                Clock now = std::chrono::steady_clock::now);

    void start(const CmpiCpp::CmpiContext& context) { _thread.start(context); }
    void stop() { _thread.stop(); }

    /// One look at switches and clock.
    void look(const CmpiCpp::CmpiContext& context);

private:
    using Time = std::chrono::steady_clock::time_point;

    void _greet(const CmpiCpp::CmpiContext& context);
    void _beat(const CmpiCpp::CmpiContext& context);
    void _test(const CmpiCpp::CmpiContext& context);

    Clock _now;
    PYL::AlertSource _alerts;
    BootRecord _boot;
    bool _hasGreeted = false;
    unsigned long long _beats = 0;
    unsigned long long _tests = 0;
    std::chrono::seconds _interval = heartBeatInterval;
    std::optional<Time> _lastBeat;
    PYL::AlertThread _thread;  // last: its looks use the others
};

}  // namespace baseserver
