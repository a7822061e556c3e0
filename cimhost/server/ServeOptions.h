#pragma once

#include "cimhost/http/HttpLimits.h"
#include "cimhost/objects/Broker.h"
#include "cimhost/server/ConsoleLog.h"
#include "cimhost/server/ObjectManager.h"
#include "cimhost/server/SchemaOptions.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace cimhost {

/// The options of `cimhost serve`, with their defaults.
struct ServeOptions {
    std::filesystem::path projectFile;  ///< empty: there is none
    SchemaOptions schema;
    std::vector<std::filesystem::path> providerFolders;
    Manner manner;
    ResultPolicy results = ResultPolicy::warn;
    bool checks = true;       ///< the files are looked through at the start
    bool isolates = false;    ///< each module has a process of its own
    std::string isolateUser;  ///< who those run as; empty: as this one
    std::chrono::milliseconds providerTime{60'000};

    std::string address = "127.0.0.1";
    std::uint16_t port = 5988;
    std::vector<std::string> hostNames;  ///< that clients may reach the server by, beside its own
    std::string tlsCertificate;
    std::string tlsKey;
    std::string passwordFile;
    HttpLimits limits;
    IndicationSettings indications;

    std::string accessLog;
    BrokerLog::Level logLevel = BrokerLog::Level::information;
    LogFormat logFormat = LogFormat::text;
    bool console = true;   ///< browsers are served, and the modules shown as instances
    bool watches = false;  ///< files that change are taken into service
    std::optional<std::uint32_t> maximumSeconds;

    /// Adds the options to a command; this object must outlive the parsing.
    void addTo(CLI::App& command);

    /// What isolation needs; none without it. Throws UsageError for a user that it cannot have.
    std::optional<IsolationSettings> isolation() const;

    bool usesTls() const noexcept { return !tlsCertificate.empty(); }

    /// Throws UsageError when others than this machine could reach the server and it would not ask
    /// them who they are, or not hide what they say.
    void checkExposure() const;

    /// Throws std::runtime_error for the first file that others have a hand in (see FileTrust.h).
    void checkFiles(const Registrations& registrations) const;

    /// The same for what may change while it is served: registrations and modules.
    void checkCode(const Registrations& registrations) const;

private:
    void _addNetworkOptions(CLI::App& command);
    void _addLimitOptions(CLI::App& command);
    void _addIsolationOptions(CLI::App& command);
    void _addIndicationOptions(CLI::App& command);
    void _addRunOptions(CLI::App& command);
};

}  // namespace cimhost
