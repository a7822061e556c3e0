#pragma once

#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "platform/ipmi/Bmc.h"

/// A controller in process, with an enclosure's module behind it that keeps the lines it is given.
/// What it answers, a test sets. One at a time; while it lives BMC_open() opens it.
class FakeController {
public:
    FakeController() {
        current = this;
        setBmcTransportFactory(open);
    }
    ~FakeController() {
        setBmcTransportFactory(nullptr);
        current = nullptr;
    }
    FakeController(FakeController const&) = delete;
    FakeController& operator=(FakeController const&) = delete;

    // Who it is.
    int openStatus = 0;
    std::uint32_t manufacturer = bmcManufacturerId;
    std::uint16_t product = 4098;
    std::vector<std::uint8_t> guid = {15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0};

    // What its module answers to a command.
    std::uint8_t completion = 0;
    std::string output = "done";
    std::string errors;

    // What came.
    std::string command;
    std::string line;
    std::size_t executions = 0;
    std::size_t ended = 0;
    int opened = 0;
    int closed = 0;
    std::size_t longestRequest = 0;

    /// Answers instead of the controller when it returns a value: 0 with the response, or a status.
    std::function<std::optional<int>(IpmiRequest const&, IpmiResponse&)> onExchange;

private:
    struct Way : BmcTransport {
        ~Way() override {
            if (current) ++current->closed;
        }
        int exchange(IpmiRequest const& request, IpmiResponse& response,
                     std::chrono::steady_clock::time_point) noexcept override try {
            return current->answer(request, response);
        } catch (std::bad_alloc const&) {
            return ENOMEM;
        }
    };

    static int open(int, std::unique_ptr<BmcTransport>& transport) noexcept {
        if (current->openStatus != 0) return current->openStatus;
        transport.reset(new (std::nothrow) Way);
        if (!transport) return ENOMEM;
        ++current->opened;
        return 0;
    }

    static void append(std::vector<std::uint8_t>& bytes, std::size_t number, int size) {
        for (int i = 0; i < size; ++i)
            bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }

    int answer(IpmiRequest const& request, IpmiResponse& response) {
        response = {};
        longestRequest = std::max(longestRequest, request.data.size());
        if (onExchange)
            if (auto const status = onExchange(request, response)) return *status;
        if (request.networkFunction == 0x06) {
            application(request.command, response);
        } else if (request.networkFunction == 0x2E) {
            enclosure(request, response);
        } else {
            response.completionCode = 0xC1;
        }
        return 0;
    }

    void application(std::uint8_t asked, IpmiResponse& response) const {
        if (asked == 0x01) {
            response.data = {0x23, 0x81, 0x89, 0x12, 0x02, 0x9F};
            append(response.data, manufacturer, 3);
            append(response.data, product, 2);
        } else if (asked == 0x37 && !guid.empty()) {
            response.data = guid;
        } else {
            response.completionCode = 0xC1;
        }
    }

    void enclosure(IpmiRequest const& request, IpmiResponse& response) {
        std::vector<std::uint8_t> const data(request.data.begin() + 3, request.data.end());
        append(response.data, bmcManufacturerId, 3);
        switch (request.command) {
            case 0x40:
                command.assign(data.begin(), data.end());
                line.clear();
                response.data.push_back(7);
                return;
            case 0x41: {
                auto const offset = static_cast<std::size_t>(data[1] | data[2] << 8);
                line.resize(offset);
                line.append(data.begin() + 3, data.end());
                return;
            }
            case 0x42:
                ++executions;
                response.data.push_back(completion);
                append(response.data, output.size(), 4);
                append(response.data, errors.size(), 4);
                return;
            case 0x43: {
                auto const& stream = data[1] == 1 ? output : errors;
                auto const offset = data[2] | static_cast<std::size_t>(data[3]) << 8 |
                                    static_cast<std::size_t>(data[4]) << 16;
                auto const part = stream.substr(offset, 200);
                response.data.insert(response.data.end(), part.begin(), part.end());
                return;
            }
            case 0x44:
                ++ended;
                return;
            default:
                response.completionCode = 0xC1;
        }
    }

    static inline FakeController* current = nullptr;
};
