#pragma once

#include "cimhost/repository/NameSpace.h"

#include <string_view>
#include <vector>

/// The association operations of DSP0200 on classes: what the schema says may be associated.
/// Safe from several threads, as the namespace is once it is filled.
namespace cimhost {

/// Names that do not filter are empty.
struct ClassAssociationFilter {
    std::string_view associationClass =
        {};                             ///< the association is this class or one of its subclasses
    std::string_view resultClass = {};  ///< the far class is this class or one of its subclasses
    std::string_view role = {};         ///< of the class asked about
    std::string_view resultRole = {};   ///< of the far class
};

/// Associators on a class: the classes that instances of it may be associated with, each once, by
/// associations that refer to it or an ancestor.
///
/// Such a far class is the one that the reference names; or, where the result class asked for is a
/// subclass of that, the result class itself. In order of the associations' definition; far classes
/// that are not known are left out. Empty for an unknown class; CimError invalidParameter for an
/// unknown association or result class.
std::vector<const Class*> associatedClasses(const NameSpace& nameSpace, std::string_view className,
                                            const ClassAssociationFilter& filter);

/// The association classes, or subclasses of `resultClass`, which may refer to the class in this
/// role: References on a class. Errors as with associatedClasses.
std::vector<const Class*> referencingClasses(const NameSpace& nameSpace, std::string_view className,
                                             std::string_view resultClass, std::string_view role);

}  // namespace cimhost
