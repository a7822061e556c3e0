#pragma once

#include "cimhost/mof/MofCursor.h"
#include "cimhost/mof/MofQualifierParser.h"
#include "cimhost/repository/NameSpace.h"

namespace cimhost {

/// Reads a class, association or indication and adds it to the namespace. The cursor is behind
/// `class`; the qualifiers are those that stood before it. Throws MofError.
void parseClass(MofCursor& cursor, NameSpace& nameSpace, MofQualifiers qualifiers);

}  // namespace cimhost
