#pragma once

#include "platform/ipmi/BmcTransport.h"
#include "pylcommon_export.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

/// @file
/// The server's management controller (BMC), and through it the enclosure's own module (ENCA).
///
/// A handle is for one thread at a time; different handles may be used at once. Nothing throws but
/// for lack of memory. docs/ipmi.md describes the ways to the controller and the command channel.

/// What the controller says it is (IPMI 2.0, 20.1).
struct BmcDeviceId {
    std::uint8_t deviceId = 0;         ///< the maker's number of the model
    std::uint8_t deviceRevision = 0;   ///< 0 to 15
    std::uint8_t firmwareMajor = 0;    ///< 0 to 127
    std::uint8_t firmwareMinor = 0;    ///< BCD
    std::uint8_t ipmiVersion = 0;      ///< BCD, the minor digit first: 0x02 is 2.0
    std::uint32_t manufacturerId = 0;  ///< IANA enterprise number, 20 bits
    std::uint16_t productId = 0;       ///< the maker's number of the product
};

/// An open way to the controller. BMC_open() fills it.
struct BmcHandle {
    std::unique_ptr<BmcTransport> transport;  ///< null while closed
    BmcDeviceId deviceId;                     ///< all 0 unless BMC_open() was to identify
    bool hasSystemGuid = false;  ///< the controller answered Get System GUID (IPMI 2.0, 22.14)
    std::string systemGuid;      ///< "00112233-4455-6677-8899-aabbccddeeff", in the order of a UUID
};

/// The maker's IANA enterprise number, which its controllers carry. A constant of the deployment:
/// -DPYL_BMC_MANUFACTURER_ID=... when the library is built. The default, 32473, is the number that
/// RFC 5612 sets aside for documentation.
PYL_EXPORT extern const std::uint32_t bmcManufacturerId;

/// Opens the controller with this number, 0 the first, and asks who it is and for the system's GUID
/// when `identify` is not 0. Returns 0, or a status that BMC_strerror() puts into words; the handle
/// is closed then.
PYL_EXPORT int BMC_open(BmcHandle& handle, int device, int identify);

/// The status of BMC_open() in words.
PYL_EXPORT std::string BMC_strerror(int status);

/// Where the output of a command goes. `used` says how much came.
struct EncaOutput {
    char* data = nullptr;  ///< the caller's, at least `size` bytes
    std::size_t size = 0;  ///< in bytes
    std::size_t used = 0;  ///< in bytes
};

constexpr std::size_t encaRequestSize = 240;    ///< the block that names the command
constexpr std::size_t encaArgumentSize = 8000;  ///< the line of its options, its zero included

/// One command of the enclosure's module.
struct EncaRequest {
    std::array<char, encaRequestSize> command{};  ///< zero-terminated
    const char* argument = nullptr;               ///< zero-terminated
};

/// Interface statuses of ENCA_CLI_Exec() that have a meaning of their own. Any other but 0 is an
/// errno value, or 0x1000 and an IPMI completion code (IPMI 2.0, 5.2).
enum EncaStatus : int {
    encaPointerIsNull = 170,   ///< there is no room for standard output or standard error
    encaCommandTimeout = 221,  ///< no answer within the time for a command
    encaOutputTooLarge = 238,  ///< the output did not fit; what fits is there
};

/// Runs a command of the enclosure's module and waits for it to end, 30 seconds at most. Returns an
/// interface status; with 0, `completionCode` is the module's own judgement of the command (0
/// success).
PYL_EXPORT int ENCA_CLI_Exec(BmcHandle& handle, const EncaRequest& request,
                             EncaOutput& standardOutput, EncaOutput& standardError,
                             std::uint8_t& completionCode);

/// While it lives, its thread's requests to the controller can be ended by another thread: once
/// `descriptor` can be read from, such as an eventfd, each ends with ECANCELED. One at a time a
/// thread.
class PYL_EXPORT BmcInterruption {
public:
    /// Borrows the descriptor, for the requests of the thread that calls.
    explicit BmcInterruption(int descriptor) noexcept;
    ~BmcInterruption();
    BmcInterruption(const BmcInterruption&) = delete;
    BmcInterruption& operator=(const BmcInterruption&) = delete;

    /// That of this thread, or -1. For implementations of BmcTransport.
    static int descriptor() noexcept;
};

/// Closes the way; a closed handle stays closed.
PYL_EXPORT void BMC_close(BmcHandle& handle) noexcept;
