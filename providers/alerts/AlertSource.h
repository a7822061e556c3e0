#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "common/IndicationDB.h"
#include "common/KTAlertIndication.h"
#include "platform/logger/Logger.h"

#include <functional>
#include <string>

namespace alerts {

/// Raises the alerts of one indication provider: looks their definitions up, fills them, hands them
/// to the object manager, and forwards them to the enclosure. Safe from several threads.
class AlertSource {
public:
    /// What the provider knows of the event beyond its definition.
    using Fill = std::function<void(PYL::KTAlertIndication&)>;

    /// `indicationName` chooses the definitions, such as "PYL_FanIndication".
    AlertSource(const CmpiCpp::CmpiBroker& broker, Logger& log, const std::string& indicationName);

    /// Raises the event. `detail` follows the definition's summary, which may end in "Id:" for it.
    /// An event without a definition, a `fill` that throws, and an object manager that does not
    /// take it, are lines in the log: whoever watches hardware goes on.
    void raise(const CmpiCpp::CmpiContext& context, int event, const std::string& detail = {},
               const Fill& fill = {}) noexcept;

private:
    void _deliver(const CmpiCpp::CmpiContext& context, const PYL::IndDBRec& record,
                  const std::string& detail, const Fill& fill);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    PYL::IndicationDB _definitions;
};

}  // namespace alerts
