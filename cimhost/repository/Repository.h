#pragma once

#include "cimhost/repository/NameSpace.h"

#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// Classes, qualifiers and static instances by namespace.
/// Filled before the server starts by one thread; afterwards constant and safe to read from
/// several.
class Repository {
public:
    /// The namespace with this name in any case, surrounding slashes ignored, or nullptr.
    const NameSpace* find(std::string_view name) const noexcept;
    NameSpace* find(std::string_view name) noexcept;

    /// As find, but an unknown namespace is CimError invalidNamespace that names it.
    const NameSpace& get(std::string_view name) const;

    /// The namespace, made when it is not there yet. CimError invalidNamespace when the name is
    /// empty.
    NameSpace& make(std::string_view name);

    /// In order of name.
    std::vector<std::string> names() const;

    // For a name that is not there, the words that tell which one was meant (NearestName.h), or
    // where the class is that this namespace has not.
    std::string meantNameSpace(std::string_view name) const;
    std::string meantClass(const NameSpace& nameSpace, std::string_view name) const;

private:
    std::shared_ptr<MemoryBudget> _budget = std::make_shared<MemoryBudget>();
    std::map<std::string, std::unique_ptr<NameSpace>, NameLess> _nameSpaces;
};

}  // namespace cimhost
