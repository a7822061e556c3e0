#pragma once

#include "cmpi/cmpidt.h"
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiArray.h"
#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/OpstatusUtils.h"
#include "common/PYLConstants.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace PYL {

/// What every provider needs: the names of the managed system, what its firmware says about its
/// kind, health arithmetic, the posting of a rolled-up status, feature switches, version strings,
/// and the keys and arguments of requests.
///
/// What throws says so; everything else turns what cannot be read into the fallback that it names,
/// and into a line in the caller's log. Whatever makes objects of the broker passes on its
/// CmpiStatus. Safe from several threads; concurrent first calls may each read SMBIOS and then
/// store the same answer.
class PYL_EXPORT PYLUtil {
public:
    PYLUtil() = delete;

    /// The host's name as gethostname(2) gives it now, or "Host Name Not Defined!".
    static std::string getHostName();

    /// The registered name of the profile that the host computer system conforms to.
    static std::string getScopedConformingProfileName();

    /// Keeps the broker's handle for all path builders, up-calls and indications of the process.
    /// Called when a provider is loaded, before any of those.
    static void setBroker(const CmpiCpp::CmpiBroker& broker);

    /// The handle that setBroker() kept, or null.
    static const CMPIBroker* getBroker();

    /// The system's UUID, or the empty text. Read anew at each call.
    static std::string getSystemUUID(Logger& log);

    /// The host computer system.
    static CmpiCpp::CmpiObjectPath getComputerSystemPath();

    /// A PCI device. Its DeviceID names the location as "0000:BB:DD.F", with the bus in hexadecimal
    /// and the device in decimal digits. The domain always reads 0000: identifiers that are already
    /// in use by management clients were made on single-domain servers.
    static CmpiCpp::CmpiObjectPath getPCIDevicePath(int domain, int bus, int device, int function);

    /// The server's own chassis.
    static CmpiCpp::CmpiObjectPath getChassisPath();

    /// The chassis of a numbered blade. The tag holds the first three characters of the number, and
    /// a number above 2147483647 counts as negative.
    static CmpiCpp::CmpiObjectPath getChassisPath(unsigned int bladeNum);

    /// The maker's server system identifier, or the empty text when the firmware has none. Kept
    /// once found.
    static std::string getServerSystemId(Logger& log);

    /// Whether this is a server of the WaveJ generation. Read anew at each call.
    static bool isWaveJServer(Logger& log);

    /// Whether this is a WaveK or newer server, which is managed without agents only.
    /// Kept after the first scan of SMBIOS that succeeds.
    static bool isAgentlessOnlyServer(Logger& log);

    /// The health that goes with an operational status. Minor and critical failures are never told.
    static healthState opstatusToHealthState(operationalStatus status) noexcept;

    /// The severity of an alert with this level. A level outside the enumeration is
    /// severityUnknown.
    static indicationSeverity ktLogToCIMSeverity(ktlogAlertLevel level) noexcept;

    /// Reports the rolled-up status of a group to the consolidated-status provider: the first
    /// element of the instance's uint16 array "GroupOperationalStatus", by the method "PostStatus"
    /// of the host computer system, an up-call. Skipped on a server that is managed without agents
    /// only.
    ///
    /// Nothing comes back, and a post that fails is a line in the log. Throws only what reading the
    /// property throws, other than that there is none (CMPI_RC_ERR_NOT_FOUND).
    static void postStatus(Logger& log, const CmpiCpp::CmpiContext& ctx,
                           const CmpiCpp::CmpiInstance& instance);

    /// Whether there is a file, of whatever kind, that root owns. Links are followed. Neither its
    /// mode nor its content counts.
    static bool FileExistsAsRootPerms(const char* path) noexcept;

    /// @{
    /// Standing switches: root's files "/tmp/PYL.heartbeats" and "/tmp/PYLPerfmon".
    static bool HeartBeatIndicationsEnabled() noexcept;
    static bool PerfmonEnabled() noexcept;
    /// @}

    /// @{
    /// Triggers for one time: root's files "/tmp/PYL.test" and "/tmp/PYL.EVConf". The name is
    /// removed by the call, also when the file is not root's and so does not count; the target of a
    /// link stays.
    static bool TestIndicationsEnabled() noexcept;
    static bool TimeIntervalConfigured() noexcept;
    /// @}

    /// Whether a version string has none but the characters it may have: digits, ".", "T", "F",
    /// "b", "v". Says nothing about their order; the empty text has none but those.
    static bool validateVersion(const std::string& version) noexcept;

    /// A part of a version string such as "2.10.0.34" or "T.2.10", counted from 0 and cut to 16
    /// bits. Parts are what stands between dots; empty ones do not count, nor does a first one that
    /// is "T", "F" or "v" alone. Digits up to the first other character make the number: "b5" reads
    /// 0. False, and 65535 in `part`, when there is no such part. A number that no long holds
    /// leaves 65535.
    static bool stringVersionGetPart(const std::string& version, unsigned short& part, int index);
    /// @{
    /// Parts 0 to 3, as stringVersionGetPart() reads them.
    static bool stringVersionToMajor(const std::string& version, unsigned short& part);
    static bool stringVersionToMinor(const std::string& version, unsigned short& part);
    static bool stringVersionToRevision(const std::string& version, unsigned short& part);
    static bool stringVersionToBuild(const std::string& version, unsigned short& part);
    /// @}

    /// The bytes of the text as a CIM uint8 array, without a terminating zero; of the recorded
    /// broker.
    static CmpiCpp::CmpiArray stringToUint8Array(const std::string& text);

    /// The key "InstanceID" of a path that has this one key, a string. Otherwise false, and
    /// `instanceID` stays as it is. Throws what the broker answers for the key, unless it misses
    /// it.
    static bool getInstanceID(const CmpiCpp::CmpiObjectPath& path, std::string& instanceID);

    /// An argument of a method. Throws CMPI_RC_ERR_INVALID_PARAMETER, with a text for the client,
    /// when it is not there or has another type; of an array the elements' type counts.
    static CmpiCpp::CmpiData getArg(const CmpiCpp::CmpiArgs& args, const CmpiCpp::CmpiName& name,
                                    unsigned short expectedType);

private:
    static std::atomic<const CMPIBroker*> _broker;
    static std::atomic<const std::string*> _serverSystemId;  // never deleted once set
    static std::atomic<std::uint8_t> smBios_scanned;
    static std::atomic<std::uint8_t> isWaveKorNewer;
};

}  // namespace PYL
