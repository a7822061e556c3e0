#pragma once

#include "toolkit/TwoEndedAssociation.h"

namespace profiles {

/// The profile that is referenced, and the one that references it.
constexpr PYL::AssociationClass referencedProfile{"PYL_ReferencedProfile", "Antecedent",
                                                  "Dependent"};
/// The profile that is extended, and the one that extends it.
constexpr PYL::AssociationClass extendsProfile{"PYL_ExtendsProfile", "Antecedent", "Dependent"};
/// The profile, and an element that conforms to it.
constexpr PYL::AssociationClass elementConformsToProfile{"PYL_ElementConformsToProfile",
                                                         "ConformantStandard", "ManagedElement"};

}  // namespace profiles
