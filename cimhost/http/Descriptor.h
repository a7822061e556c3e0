#pragma once

#include <unistd.h>

#include <utility>

namespace cimhost {

/// Owns a file descriptor and closes it.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int handle) noexcept : _handle(handle) {}
    Descriptor(Descriptor&& other) noexcept : _handle(std::exchange(other._handle, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(_handle, other._handle);
        return *this;
    }
    ~Descriptor() { reset(); }

    int get() const noexcept { return _handle; }
    explicit operator bool() const noexcept { return _handle >= 0; }
    void reset() noexcept {
        if (_handle >= 0) close(std::exchange(_handle, -1));
    }

private:
    int _handle = -1;
};

}  // namespace cimhost
