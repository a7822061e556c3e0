#pragma once

#include <filesystem>
#include <string>

/// The OpenIPMI simulator on a free loopback port, with the enclosure's module in it. It ends with
/// this.
class Simulator {
public:
    /// `product` is what the controller says it is.
    explicit Simulator(unsigned product = 4098);
    ~Simulator();
    Simulator(const Simulator&) = delete;
    Simulator& operator=(const Simulator&) = delete;

    const std::string& port() const noexcept { return _port; }

    /// What the module is to answer from now on: "completion 5", "output 300000".
    void behave(const std::string& behaviour) const;

    /// The lines that the module was given, each with its end of line.
    std::string lines() const;

private:
    void _start();
    void _stop() noexcept;

    std::filesystem::path _folder;
    std::string _port;
    int _process = -1;
};
