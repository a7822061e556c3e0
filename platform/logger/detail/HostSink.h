#pragma once

#include "platform/logger/LogSink.h"

#include <cstddef>

/// Hands lines to the log of the program that hosts the module, which says when and in which
/// request they were written. Private to the library: hostedLogger() finds the log.
class HostSink final : public LogSink {
public:
    using Write = void (*)(int level, const char* source, std::size_t sourceSize, const char* text,
                           std::size_t textSize);

    /// The function that a host offers under this name, or nullptr.
    static Write find() noexcept;

    explicit HostSink(Write function) noexcept : _write(function) {}
    ~HostSink() override;

    void write(LogLevel level, std::string_view source, std::string_view message) noexcept override;

private:
    Write _write;
};
