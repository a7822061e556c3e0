// a2, a3: the start on first use once it has happened, against an atomic pointer; the timing,
// against two readings of the clock. And decorators stacked, against the provider alone. All with
// the log off but where the row says so.
#include "bench/library/Rows.h"
#include "bench/library/Stage.h"
#include "common/AutostartDecorator.h"
#include "common/DecoratorUtils.h"
#include "common/LoggedProvider.h"
#include "common/PerfmonDecorator.h"
#include "platform/logger/StandardErrorSink.h"

#include <fcntl.h>
#include <sys/time.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <memory>

namespace {

using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiProvider;

/// Does nothing when it is asked to.
class Nothing : public CmpiCpp::CmpiIndicationProvider {
public:
    CMPIBroker* getBroker() override { return nullptr; }
    void authorizeFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                         const CmpiCpp::CmpiObjectPath&, const std::string&) override {}
    void mustPoll(const CmpiContext&, const CMPISelectExp*, const std::string&,
                  const CmpiCpp::CmpiObjectPath&) override {}
    void activateFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                        const CmpiCpp::CmpiObjectPath&, bool) override {}
    void deactivateFilter(const CmpiContext&, const CMPISelectExp*, const std::string&,
                          const CmpiCpp::CmpiObjectPath&, bool) override {}
    void enableIndications(const CmpiContext&) override {}
    void disableIndications(const CmpiContext&) override {}
};

CmpiProvider* makeNothing(const CmpiBroker&, Logger&) { return new Nothing; }
CmpiProvider* makeTimed(const CmpiBroker& broker, Logger& log) {
    return new PYL::PerfmonDecorator(broker, log, makeNothing);
}
CmpiProvider* makeLogged(const CmpiBroker& broker, Logger& log) {
    return new PYL::LoggedProvider(broker, log, makeTimed);
}

int nullDevice() {
    static const int descriptor = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    return descriptor;
}

Logger logger(LogLevel level) {
    return Logger("bench", std::make_shared<StandardErrorSink>(nullDevice()), level);
}

CmpiBroker broker() { return CmpiBroker(stageBroker().handle()); }

void addRequests(const char* name, std::shared_ptr<CmpiCpp::CmpiIndicationProvider> provider) {
    addRow(name,
           [provider = std::move(provider)] { provider->enableIndications(CmpiContext(nullptr)); });
}

template <typename Decorator>
std::shared_ptr<Decorator> wrapped(LogLevel level, typename Decorator::Factory factory) {
    auto log = logger(level);
    return std::make_shared<Decorator>(broker(), log, factory);
}

std::shared_ptr<PYL::AutostartDecorator> started(PYL::AutostartDecorator::Factory factory) {
    auto log = logger(LogLevel::error);
    // The worker instance is asked by none of these requests.
    return std::make_shared<PYL::AutostartDecorator>(broker(), log, nullptr, factory);
}

void forwardThroughAtomic(const std::atomic<CmpiProvider*>& provider) {
    PYL::asIndicationProvider(provider.load(std::memory_order_acquire))
        ->enableIndications(CmpiContext(nullptr));
}

void writeTime(const timeval& start, const timeval& end) {
    char line[128];
    const int size = std::snprintf(line, sizeof line, "%s: %s: %s completed in %d.%02ds\n",
                                   "bench:perfmon", "information", "enableIndications",
                                   static_cast<int>(end.tv_sec - start.tv_sec),
                                   static_cast<int>((end.tv_usec - start.tv_usec) / 10000));
    const auto written = ::write(nullDevice(), line, static_cast<std::size_t>(size));
    benchmark::DoNotOptimize(written);
}

void timeByHand(CmpiProvider* provider, bool writes) {
    timeval start{};
    timeval end{};
    gettimeofday(&start, nullptr);
    PYL::asIndicationProvider(provider)->enableIndications(CmpiContext(nullptr));
    gettimeofday(&end, nullptr);
    benchmark::DoNotOptimize(end);
    if (writes) writeTime(start, end);
}

}  // namespace

void addDecoratorRows() {
    const auto inner = std::make_shared<Nothing>();
    const auto pointer = std::make_shared<std::atomic<CmpiProvider*>>(inner.get());

    addRequests("a2/started/library", started(makeNothing));
    addRow("a2/started/anchor", [inner, pointer] { forwardThroughAtomic(*pointer); });

    addRequests("a3/timing, log off/library",
                wrapped<PYL::PerfmonDecorator>(LogLevel::error, makeNothing));
    addRow("a3/timing, log off/anchor", [inner] { timeByHand(inner.get(), false); });
    addRequests("a3/timing with its line/library",
                wrapped<PYL::PerfmonDecorator>(LogLevel::information, makeNothing));
    addRow("a3/timing with its line/anchor", [inner] { timeByHand(inner.get(), true); });

    // What each decorator adds, the log off, to the provider alone.
    addRequests("stack/of 1: logged/library",
                wrapped<PYL::LoggedProvider>(LogLevel::error, makeNothing));
    addRequests("stack/of 2: logged, timed/library",
                wrapped<PYL::LoggedProvider>(LogLevel::error, makeTimed));
    addRequests("stack/of 3: autostarted, logged, timed/library", started(makeLogged));
    for (const auto* name : {"stack/of 1: logged/anchor", "stack/of 2: logged, timed/anchor",
                             "stack/of 3: autostarted, logged, timed/anchor"}) {
        addRequests(name, inner);
    }
}
