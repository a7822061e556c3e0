#include "toolkit/TroubleSink.h"

#include <exception>
#include <utility>

namespace PYL {

void TroubleSink::write(LogLevel level, std::string_view, std::string_view message) noexcept {
    try {
        if (!_isNews(level, message)) return;
    } catch (const std::exception&) {
        // No memory to remember it: it is told once more.
    }
    switch (level) {
        case LogLevel::error: return _log.error("%s", message);
        case LogLevel::warning: return _log.warn("%s", message);
        case LogLevel::information: return _log.info("%s", message);
    }
}

bool TroubleSink::_isNews(LogLevel level, std::string_view message) {
    const std::lock_guard lock(_mutex);
    if (level != LogLevel::error) return _isNewsOfTheController(message);
    return _now.emplace(message).second && !_before.contains(message);
}

bool TroubleSink::_isNewsOfTheController(std::string_view message) {
    if (message.starts_with("calling ENCA_CLI_Exec")) _controller.clear();
    const bool isTrouble = message.starts_with("BMC_open() failed: ") ||
                           message == "not forwarded to ENCA since not a Tarsus server";
    return !isTrouble || std::exchange(_controller, std::string(message)) != message;
}

void TroubleSink::endAlert() noexcept {
    const std::lock_guard lock(_mutex);
    _before = std::exchange(_now, {});
}

}  // namespace PYL
