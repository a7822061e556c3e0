#include "platform/logger/CapturingSink.h"

CapturingSink::~CapturingSink() = default;

void CapturingSink::write(LogLevel level, std::string_view source,
                          std::string_view message) noexcept try {
    const std::lock_guard lock(_mutex);
    _lines.push_back({level, std::string(source), std::string(message)});
} catch (...) {
    // Short of memory: the line is lost, as at any other sink.
}

std::vector<CapturingSink::Line> CapturingSink::lines() const {
    const std::lock_guard lock(_mutex);
    return _lines;
}

std::vector<std::string> CapturingSink::messages() const {
    std::vector<std::string> texts;
    for (Line& line : lines()) texts.push_back(std::move(line.message));
    return texts;
}

std::vector<std::string> CapturingSink::messages(LogLevel level) const {
    std::vector<std::string> texts;
    for (Line& line : lines()) {
        if (line.level == level) texts.push_back(std::move(line.message));
    }
    return texts;
}

void CapturingSink::clear() {
    const std::lock_guard lock(_mutex);
    _lines.clear();
}
