#pragma once

#include "cimhost/mof/MofCursor.h"
#include "cimhost/mof/MofValueParser.h"
#include "cimhost/repository/NameSpace.h"

#include <string>
#include <vector>

namespace cimhost {

struct MofInstanceProperty {
    std::string name;
    MofInitializer value;
    MofPosition position;
};

/// An instance as written: aliases may lead to instances that come later.
struct MofInstance {
    const NameSpace* nameSpace = nullptr;
    const Class* definition = nullptr;
    std::string alias;  ///< with its '$'; empty without
    std::vector<MofInstanceProperty> properties;
    MofPosition position;  ///< of the class name
    MofPosition aliasPosition;

    const MofInstanceProperty* find(std::string_view name) const noexcept;
};

/// `instance of Class as $alias { name = value; ... };` The cursor is behind `instance`.
/// The class must be known and have the properties. Throws MofError.
MofInstance parseInstance(MofCursor& cursor, const NameSpace& nameSpace);

}  // namespace cimhost
