#include "common/PerfmonDecorator.h"

#include "common/detail/ForwardedOperations.h"

#include <cstdint>
#include <string_view>

namespace PYL {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;

namespace {

void logTimeTaken(const Logger& log, std::string_view operation, const timeval& start,
                  const timeval& end) {
    constexpr std::uint32_t second = 1'000'000;
    constexpr std::int32_t hundredth = 10'000;
    // Unsigned, so that readings that no clock gives wrap round: 64 bits of seconds, of which 32
    // are printed, and 32 bits of microseconds.
    const auto secs =
        static_cast<std::uint64_t>(end.tv_sec) - static_cast<std::uint64_t>(start.tv_sec);
    auto usecs =
        static_cast<std::uint32_t>(end.tv_usec) - static_cast<std::uint32_t>(start.tv_usec);
    if (secs != 0) {
        usecs += second;
        if (static_cast<std::int32_t>(usecs) >= static_cast<std::int32_t>(second)) usecs -= second;
    }
    log.info("%s completed in %d.%02ds", operation, static_cast<std::int32_t>(secs),
             static_cast<std::int32_t>(usecs) / hundredth);
}

}  // namespace

/// Reads the clock when it is made and when it ends, and writes the line of the operation then:
/// after the call, whether it returned or threw.
class PerfmonDecorator::Timing {
public:
    Timing(PerfmonDecorator& decorator, const char* operation) noexcept
        : _decorator(decorator), _operation(operation) {
        gettimeofday(&_start, nullptr);
    }
    ~Timing() {
        timeval end{};
        gettimeofday(&end, nullptr);
        if (_decorator._log.infoEnabled()) logTimeTaken(_decorator._log, _operation, _start, end);
    }
    Timing(const Timing&) = delete;
    Timing& operator=(const Timing&) = delete;

private:
    PerfmonDecorator& _decorator;
    const char* _operation;
    timeval _start{};
};

void PerfmonDecorator::_logTimeTaken(const std::string& name, timeval* start, timeval* end) {
    logTimeTaken(_log, name, *start, *end);
}

PerfmonDecorator::PerfmonDecorator(const CmpiBroker& broker, Logger& logger, Factory factory)
    : _broker(broker), _log(logger) {
    _log.appendLogSource(":perfmon");
    const Timing timing(*this, "constructor");
    _p = factory(broker, logger);
}

PerfmonDecorator::PerfmonDecorator(const CmpiBroker& broker, Logger& logger, ContextFactory factory,
                                   const CMPIContext* context)
    : _broker(broker), _log(logger) {
    _log.appendLogSource(":perfmon");
    const Timing timing(*this, "constructor");
    _p = factory(broker, logger, context);
}

PerfmonDecorator::~PerfmonDecorator() {
    const Timing timing(*this, "destructor");
    delete _p;
}

template <auto asInterface, auto operation, typename... Arguments>
void PerfmonDecorator::_forward(const char* name, Arguments&... arguments) {
    const Timing timing(*this, name);
    (asInterface(_p)->*operation)(arguments...);
}

CMPIBroker* PerfmonDecorator::getBroker() { return _broker.toRawCMPI(); }

int PerfmonDecorator::unloadOK(const CmpiContext& context) {
    const Timing timing(*this, "unloadOK");
    return _p ? _p->unloadOK(context) : 0;
}

void PerfmonDecorator::cleanup(const CmpiContext& context, bool terminating) {
    const Timing timing(*this, "cleanup");
    if (_p) _p->cleanup(context, terminating);
}

#define PYL_DECORATOR PerfmonDecorator
PYL_EACH_PROVIDER_OPERATION(PYL_FORWARD, PYL_LEAVE)
#undef PYL_DECORATOR

}  // namespace PYL
