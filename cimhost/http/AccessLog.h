#pragma once

#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace cimhost {

/// One answered request as the log shows it. Empty texts are written as "-".
struct AccessRecord {
    std::string_view peer;
    std::string_view user;
    std::string_view operation;
    std::string_view object;
    std::string_view outcome;
    int status = 0;
    std::uint64_t bytes = 0;
    std::chrono::microseconds duration{};
};

/// Writes one line a request:
///
///     2024-05-01T12:00:00.123Z 127.0.0.1:40112 user GetInstance root/cimv2 200 - 1234B 98us
///
/// The outcome, here "-" for success, is the CIM status of an operation that failed or the CIMError
/// of a request that is none. Fields hold no blank, control character or quote of a client's
/// making: such bytes are written %XX. Each line is one write to a file opened for appending. Safe
/// from several threads.
class AccessLog {
public:
    /// Appends to the file, made for its owner's eyes when new; "-" is standard output.
    /// Throws std::system_error that names a file which cannot be opened.
    explicit AccessLog(const std::string& file);
    ~AccessLog();
    AccessLog(const AccessLog&) = delete;
    AccessLog& operator=(const AccessLog&) = delete;

    /// A line that cannot be written is lost: no request fails for it.
    void write(const AccessRecord& record) noexcept;

private:
    int _descriptor;
    bool _owned;
};

/// The line for a record, without its end.
std::string formatAccess(const AccessRecord& record, std::chrono::system_clock::time_point time);

}  // namespace cimhost
