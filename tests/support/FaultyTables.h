#pragma once

#include "cmpi/cmpift.h"

/// How the tables are interposed; FaultyBroker.h is for use.
namespace testsupport {

/// Replaces the table of an object by one whose calls can fail. Null is let alone, and an object
/// that is interposed already.
void interpose(const CMPIContext* object);
void interpose(const CMPIResult* object);
void interpose(const CMPIString* object);
void interpose(const CMPIArray* object);
void interpose(const CMPIEnumeration* object);
void interpose(const CMPIInstance* object);
void interpose(const CMPIObjectPath* object);
void interpose(const CMPIArgs* object);
void interpose(const CMPIDateTime* object);
void interpose(const CMPISelectExp* object);
void interpose(const CMPISelectCond* object);
void interpose(const CMPISubCond* object);
void interpose(const CMPIPredicate* object);
void interpose(const CMPIError* object);
void interpose(const CMPIPropertyList* object);
void interpose(const CMPIEnumerationFilter* object);

/// The broker's tables, in front of these.
CMPIBroker interposed(const CMPIBroker& real);

}  // namespace testsupport
