#include "providers/baseserver/ServerWatch.h"

#include "common/PYLUtil.h"

#include <string>

namespace baseserver {

using CmpiCpp::CmpiContext;
using PYL::PYLUtil;

namespace {

constexpr std::chrono::seconds lookPeriod{1};

// Of the definitions of PYL_BaseServerIndication.
constexpr int providersStarted = 1;
constexpr int bootCompleted = 4;
constexpr int heartBeat = 100;
constexpr int testEvents[] = {101, 102, 103};

}  // namespace

ServerWatch::ServerWatch(const CmpiCpp::CmpiBroker& broker, Logger& log, Clock now)
    : _now(std::move(now)),
      _alerts(broker, log, "PYL_BaseServerIndication"),
      _boot("baseserver-boot", log),
      _thread(broker, log, lookPeriod, [this](const CmpiContext& context) { look(context); }) {}

void ServerWatch::look(const CmpiContext& context) {
    _greet(context);
    _beat(context);
    _test(context);
}

void ServerWatch::_greet(const CmpiContext& context) {
    if (_hasGreeted) return;
    _hasGreeted = true;
    _alerts.raise(context, providersStarted);
    if (_boot.isNew()) _alerts.raise(context, bootCompleted);
}

void ServerWatch::_beat(const CmpiContext& context) {
    if (PYLUtil::TimeIntervalConfigured()) _interval = shortInterval;
    if (!PYLUtil::HeartBeatIndicationsEnabled()) {
        _lastBeat.reset();
        return;
    }
    const auto now = _now();
    if (_lastBeat && now - *_lastBeat < _interval) return;
    _lastBeat = now;
    _alerts.raise(context, heartBeat, std::to_string(++_beats));
}

void ServerWatch::_test(const CmpiContext& context) {
    if (!PYLUtil::TestIndicationsEnabled()) return;
    for (const int event : testEvents) _alerts.raise(context, event, std::to_string(++_tests));
}

}  // namespace baseserver
