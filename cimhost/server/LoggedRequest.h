#pragma once

#include <cstdint>
#include <string_view>

namespace cimhost {

/// While it lives, lines that its thread writes to the log tell the request that it answers. As a
/// local variable; what the view leads to outlives it.
class LoggedRequest {
public:
    LoggedRequest(std::uint64_t itsNumber, std::string_view itsOperation) noexcept
        : number(itsNumber), operation(itsOperation), _outer(innermost) {
        innermost = this;
    }
    ~LoggedRequest() { innermost = _outer; }
    LoggedRequest(const LoggedRequest&) = delete;
    LoggedRequest& operator=(const LoggedRequest&) = delete;

    /// The innermost of the calling thread, or nullptr.
    static const LoggedRequest* current() noexcept { return innermost; }

    const std::uint64_t number;        ///< counts the requests of the server from 1
    const std::string_view operation;  ///< as the client calls it

private:
    inline static constinit thread_local const LoggedRequest* innermost = nullptr;
    const LoggedRequest* _outer;
};

}  // namespace cimhost
