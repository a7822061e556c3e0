#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "common/IndicationDB.h"
#include "common/KTAlertIndication.h"
#include "platform/logger/Logger.h"
#include "pylcommon_export.h"
#include "toolkit/AlertDefinition.h"

#include <functional>
#include <memory>
#include <span>
#include <string>

namespace PYL {

class AlertForwarder;
class TroubleSink;

/// Raises the alerts of one indication provider: looks their definitions up, fills them, hands them
/// to the object manager, and forwards them to the enclosure. Safe from several threads.
///
/// Neither way waits for the other. A thread of the source's own forwards, and 64 alerts wait for
/// it at most: what finds no room is dropped and told in the log with a count. What is wrong with
/// the host, such as that it has no SMBIOS or no controller, is told once until it is over.
class PYL_EXPORT AlertSource {
public:
    /// What the provider knows of the event beyond its definition.
    using Fill = std::function<void(KTAlertIndication&)>;

    /// `indicationName` chooses the library's definitions, such as "PYL_FanIndication"; a name that
    /// it does not know has none. `own` stand beside them, and are copied. Keeps a copy of the
    /// logger.
    ///
    /// Throws CMPI_RC_ERR_ALREADY_EXISTS when one of the provider's own has the number of another
    /// definition, CMPI_RC_ERR_INVALID_PARAMETER when it has one below 1; the text names number and
    /// indication.
    AlertSource(const CmpiCpp::CmpiBroker& broker, Logger& log, const std::string& indicationName,
                std::span<const AlertDefinition> own = {});
    /// Gives alerts that wait to be forwarded half a second, and drops the rest.
    ~AlertSource();
    AlertSource(const AlertSource&) = delete;
    AlertSource& operator=(const AlertSource&) = delete;

    /// Raises the event with this number, on the thread that calls. `detail` follows the
    /// definition's summary, which may end in "Id:" for it. An event without a definition, a `fill`
    /// that throws, and an object manager that does not take it, are lines in the log: whoever
    /// watches hardware goes on.
    void raise(const CmpiCpp::CmpiContext& context, int event, const std::string& detail = {},
               const Fill& fill = {}) noexcept;

    /// Waits until every alert that was raised has been forwarded, refused or dropped.
    void waitUntilForwarded();

private:
    using Alert = std::unique_ptr<KTAlertIndication>;

    void _define(const std::string& indicationName, const AlertDefinition& definition);
    void _deliver(const CmpiCpp::CmpiContext& context, const IndDBRec& record,
                  const std::string& detail, const Fill& fill);
    CmpiCpp::CmpiInstance _makeInstanceAndForward(Alert alert);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    std::shared_ptr<TroubleSink> _troubles;
    Logger _alertLog;
    IndicationDB _definitions;
    std::unique_ptr<AlertForwarder> _forwarder;
};

}  // namespace PYL
