#pragma once

#include "cimhost/cimxml/XmlBuffer.h"
#include "cimhost/indications/IndicationOutlet.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Indications as export messages (DSP0200, 6.3; DSP0201, SIMPLEEXPREQ). Pure functions, safe from
/// several threads.
namespace cimhost {

/// What the message adds to an indication.
struct ExportSequence {
    std::string_view context;  ///< SequenceContext
    std::int64_t number = 0;   ///< SequenceNumber; the message's ID, too
    std::string_view host;     ///< this one, which references lead to
};

/// Appends the whole message with the indication as it is. References without a namespace are in
/// this one. Throws as below.
void writeExport(XmlBuffer& out, std::int64_t id, const OutgoingIndication& indication,
                 std::string_view host, std::string_view nameSpace);

/// Appends the whole message. Sequence and filter name are set where the class has them, the latter
/// unless the provider did. Throws CimError failed for a value that CIM-XML has no form for.
void writeExportMessage(XmlBuffer& out, const OutgoingIndication& indication,
                        const ExportSequence& sequence);

/// Why the answer to an export message, the body of a 200 reply, does not say that the indication
/// was taken; nothing when it does.
std::optional<std::string> exportFailure(std::string_view body);

}  // namespace cimhost
