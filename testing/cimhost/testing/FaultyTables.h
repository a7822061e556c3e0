#pragma once

#include "cmpi/cmpift.h"

/// @file
/// How the tables are interposed; FaultyBroker.h is for use.
namespace cimtest {

/// Replaces the table of an object by one whose calls can fail. Null is let alone, and an object
/// that is interposed already. For every kind of object but the broker itself.
template <typename Handle>
void interpose(const Handle* object);

/// The broker's tables, in front of these.
CMPIBroker interposed(const CMPIBroker& real);

}  // namespace cimtest
