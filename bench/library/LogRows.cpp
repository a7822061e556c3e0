// a4: a line that the level drops, against the bare test; a line that is written, against
// hand-written code.
#include "bench/library/Rows.h"
#include "platform/logger/Logger.h"
#include "platform/logger/StandardErrorSink.h"

#include <fcntl.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <memory>
#include <string>

namespace {

const std::string path = "//host/root/bench:Bench_Device.DeviceID=\"00000042\"";

// Lines are dropped by the kernel, so that the disk has no part in the figures.
int nullDevice() {
    static const int descriptor = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    return descriptor;
}

Logger makeLogger(LogLevel level) {
    return Logger("bench", std::make_shared<StandardErrorSink>(nullDevice()), level);
}

void writeByHand(const std::string& text) {
    char line[512];
    const int size = std::snprintf(line, sizeof line, "%s: %s: deliver: %s\n", "bench",
                                   "information", text.c_str());
    const ssize_t written = ::write(nullDevice(), line, static_cast<std::size_t>(size));
    benchmark::DoNotOptimize(written);
}

}  // namespace

void addLogRows() {
    addRow("a4/off/library",
           [log = makeLogger(LogLevel::error)] { log.info("deliver: %s", path); });
    addRow("a4/off/anchor", [level = std::make_shared<std::atomic<LogLevel>>(LogLevel::error)] {
        if (level->load(std::memory_order_relaxed) >= LogLevel::information) writeByHand(path);
    });
    addRow("a4/on/library",
           [log = makeLogger(LogLevel::information)] { log.info("deliver: %s", path); });
    addRow("a4/on/anchor", [] { writeByHand(path); });
}
