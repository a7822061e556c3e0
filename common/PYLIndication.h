#pragma once

/// @file
/// The builders of indication instances, from the plainest to the one that providers use.

#include "common/CIMAlertIndication.h"
#include "common/CIMIndication.h"
#include "common/KTAlertIndication.h"
