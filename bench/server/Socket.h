#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

/// A connected or listening TCP socket on the loopback interface, without Nagle's delay.
/// Every failing call is a std::system_error.
class Socket {
public:
    static Socket listen();  ///< on a free port
    static Socket connect(std::uint16_t port);

    explicit Socket(int descriptor) noexcept : _descriptor(descriptor) {}
    Socket(Socket&& other) noexcept;
    Socket& operator=(Socket&&) = delete;
    ~Socket();

    Socket accept() const;
    std::uint16_t port() const;

    /// Hands all of it over.
    void write(std::string_view bytes) const;
    /// At least one byte, or 0 at the end.
    std::size_t read(char* to, std::size_t size) const;

private:
    int _descriptor;
};

/// The bytes of a file; std::runtime_error when it cannot be read.
std::string readFile(const std::string& name);
