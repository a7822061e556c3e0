#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/PYLConstants.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

namespace PYL {

/// How every provider names the managed system: the host, its computer system, its PCI devices and
/// its chassis; and what the firmware says about the server's kind.
///
/// Nothing here throws on its own account: what cannot be read becomes the fallback that each operation
/// names, and a line in the caller's log. The path builders pass on the CmpiStatus of the object manager.
/// Safe from several threads; concurrent first calls may each read SMBIOS and then store the same answer.
class PYL_EXPORT PYLUtil {
public:
    PYLUtil() = delete;

    /// The host's name as gethostname(2) gives it now, or "Host Name Not Defined!".
    static std::string getHostName();

    /// The registered name of the profile that the host computer system conforms to.
    static std::string getScopedConformingProfileName();

    /// Keeps the broker's handle for all path builders, up-calls and indications of the process.
    /// Called when a provider is loaded, before any of those.
    static void setBroker(CmpiCpp::CmpiBroker const& broker);

    /// The handle that setBroker() kept, or null.
    static CMPIBroker const* getBroker();

    /// The system's UUID, or the empty text. Read anew at each call.
    static std::string getSystemUUID(Logger& log);

    /// The host computer system.
    static CmpiCpp::CmpiObjectPath getComputerSystemPath();

    /// A PCI device. Its DeviceID names the location as "0000:BB:DD.F", with the bus in hexadecimal and
    /// the device in decimal digits. The domain always reads 0000: identifiers that are already in use by
    /// management clients were made on single-domain servers.
    static CmpiCpp::CmpiObjectPath getPCIDevicePath(int domain, int bus, int device, int function);

    /// The server's own chassis.
    static CmpiCpp::CmpiObjectPath getChassisPath();

    /// The chassis of a numbered blade. The tag holds the first three characters of the number, and a
    /// number above 2147483647 counts as negative.
    static CmpiCpp::CmpiObjectPath getChassisPath(unsigned int bladeNum);

    /// The maker's server system identifier, or the empty text when the firmware has none. Kept once found.
    static std::string getServerSystemId(Logger& log);

    /// Whether this is a server of the WaveJ generation. Read anew at each call.
    static bool isWaveJServer(Logger& log);

    /// Whether this is a WaveK or newer server, which is managed without agents only.
    /// Kept after the first scan of SMBIOS that succeeds.
    static bool isAgentlessOnlyServer(Logger& log);

private:
    static std::atomic<CMPIBroker const*> _broker;
    static std::atomic<std::string const*> _serverSystemId;  // never deleted once set
    static std::atomic<std::uint8_t> smBios_scanned;
    static std::atomic<std::uint8_t> isWaveKorNewer;
};

}  // namespace PYL
