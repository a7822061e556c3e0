#pragma once

#include "cimhost/indications/IndicationOutlet.h"
#include "cimhost/server/events/EventFeed.h"

namespace cimhost {

/// Publishes the event `alert` of an indication. False when nobody looks. Throws CimError failed
/// for what CIM-XML has no form for.
bool tell(EventFeed& feed, const OutgoingIndication& outgoing);

}  // namespace cimhost
