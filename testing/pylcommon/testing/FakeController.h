#pragma once

#include "platform/ipmi/Bmc.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <new>
#include <optional>
#include <string>

namespace cimtest {

/// A controller in process, with an enclosure's module behind it that keeps the lines it is given.
/// What it answers, a test sets. One at a time; while it lives BMC_open() opens it.
class FakeController {
public:
    FakeController() {
        current = this;
        setBmcTransportFactory(_open);
    }
    ~FakeController() {
        setBmcTransportFactory(nullptr);
        current = nullptr;
    }
    FakeController(const FakeController&) = delete;
    FakeController& operator=(const FakeController&) = delete;

    /// @{
    /// Who it is.
    int openStatus = 0;
    std::uint32_t manufacturer = bmcManufacturerId;
    std::uint16_t product = 4098;
    std::vector<std::uint8_t> guid = {15, 14, 13, 12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0};
    /// @}

    /// @{
    /// What its module answers to a command.
    std::uint8_t completion = 0;
    std::string output = "done";
    std::string errors;
    /// @}

    /// @{
    /// What came.
    std::string command;
    std::string line;
    std::size_t executions = 0;
    std::size_t ended = 0;
    int opened = 0;
    int closed = 0;
    std::size_t longestRequest = 0;
    /// @}

    /// Answers instead of the controller when it returns a value: 0 with the response, or a status.
    std::function<std::optional<int>(const IpmiRequest&, IpmiResponse&)> onExchange;

private:
    struct Way : BmcTransport {
        ~Way() override {
            if (current) ++current->closed;
        }
        int exchange(const IpmiRequest& request, IpmiResponse& response,
                     std::chrono::steady_clock::time_point) noexcept override try {
            return current->_answer(request, response);
        } catch (const std::bad_alloc&) {
            return ENOMEM;
        }
    };

    static int _open(int, std::unique_ptr<BmcTransport>& transport) noexcept {
        if (current->openStatus != 0) return current->openStatus;
        transport.reset(new (std::nothrow) Way);
        if (!transport) return ENOMEM;
        ++current->opened;
        return 0;
    }

    static void _append(std::vector<std::uint8_t>& bytes, std::size_t number, int size) {
        for (int i = 0; i < size; ++i) {
            bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
        }
    }

    int _answer(const IpmiRequest& request, IpmiResponse& response) {
        response = {};
        longestRequest = std::max(longestRequest, request.data.size());
        if (onExchange) {
            if (const auto status = onExchange(request, response)) return *status;
        }
        if (request.networkFunction == 0x06) {
            _application(request.command, response);
        } else if (request.networkFunction == 0x2E) {
            _enclosure(request, response);
        } else {
            response.completionCode = 0xC1;
        }
        return 0;
    }

    void _application(std::uint8_t asked, IpmiResponse& response) const {
        if (asked == 0x01) {
            response.data = {0x23, 0x81, 0x89, 0x12, 0x02, 0x9F};
            _append(response.data, manufacturer, 3);
            _append(response.data, product, 2);
        } else if (asked == 0x37 && !guid.empty()) {
            response.data = guid;
        } else {
            response.completionCode = 0xC1;
        }
    }

    void _enclosure(const IpmiRequest& request, IpmiResponse& response) {
        const std::vector<std::uint8_t> data(request.data.begin() + 3, request.data.end());
        _append(response.data, bmcManufacturerId, 3);
        switch (request.command) {
            case 0x40:
                command.assign(data.begin(), data.end());
                line.clear();
                response.data.push_back(7);
                return;
            case 0x41: {
                const auto offset = static_cast<std::size_t>(data[1] | data[2] << 8);
                line.resize(offset);
                line.append(data.begin() + 3, data.end());
                return;
            }
            case 0x42:
                ++executions;
                response.data.push_back(completion);
                _append(response.data, output.size(), 4);
                _append(response.data, errors.size(), 4);
                return;
            case 0x43: {
                const auto& stream = data[1] == 1 ? output : errors;
                const auto offset = data[2] | static_cast<std::size_t>(data[3]) << 8 |
                                    static_cast<std::size_t>(data[4]) << 16;
                const auto part = stream.substr(offset, 200);
                response.data.insert(response.data.end(), part.begin(), part.end());
                return;
            }
            case 0x44: ++ended; return;
            default: response.completionCode = 0xC1;
        }
    }

    static inline FakeController* current = nullptr;
};

}  // namespace cimtest
