#pragma once

#include "cimhost/mof/MofCursor.h"
#include "cimhost/repository/NameSpace.h"

#include <cstdint>
#include <string>
#include <vector>

namespace cimhost {

/// A qualifier as used, in the type of its declaration.
struct MofQualifier {
    Qualifier qualifier;
    MofPosition position;
};

using MofQualifiers = std::vector<MofQualifier>;

/// `[...]`, or nothing when the cursor is not at a bracket. Every qualifier must be declared in the
/// namespace. Throws MofError.
MofQualifiers parseQualifiers(MofCursor& cursor, const NameSpace& nameSpace);

/// The plain list, each held against the scopes; `element` names what they stand on.
Qualifiers placedQualifiers(MofQualifiers qualifiers, std::uint16_t scopes,
                            const std::string& element, const NameSpace& nameSpace);

/// `qualifier name : type = value, scope(...), flavor(...);` The cursor is behind the first word.
QualifierDeclaration parseQualifierDeclaration(MofCursor& cursor, const NameSpace& nameSpace);

}  // namespace cimhost
