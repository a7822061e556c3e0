#pragma once

#include <functional>
#include <string>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "common/IndicationDB.h"
#include "common/KTAlertIndication.h"
#include "platform/logger/Logger.h"

namespace alerts {

/// Raises the alerts of one indication provider: looks their definitions up, fills them, hands them
/// to the object manager, and forwards them to the enclosure. Safe from several threads.
class AlertSource {
public:
    /// What the provider knows of the event beyond its definition.
    using Fill = std::function<void(PYL::KTAlertIndication&)>;

    /// `indicationName` chooses the definitions, such as "PYL_FanIndication".
    AlertSource(CmpiCpp::CmpiBroker const& broker, Logger& log, std::string const& indicationName);

    /// Raises the event. `detail` follows the definition's summary, which may end in "Id:" for it.
    /// An event without a definition, a `fill` that throws, and an object manager that does not
    /// take it, are lines in the log: whoever watches hardware goes on.
    void raise(CmpiCpp::CmpiContext const& context, int event, std::string const& detail = {},
               Fill const& fill = {}) noexcept;

private:
    void deliver(CmpiCpp::CmpiContext const& context, PYL::IndDBRec const& record,
                 std::string const& detail, Fill const& fill);

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    PYL::IndicationDB _definitions;
};

}  // namespace alerts
