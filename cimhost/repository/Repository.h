#pragma once

#include "cimhost/repository/NameSpace.h"

#include <atomic>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace cimhost {

/// Classes, qualifiers and static instances by namespace.
/// Filled before the server starts by one thread; afterwards safe to read from several, and
/// replaced as a whole only.
class Repository {
public:
    Repository() = default;
    /// The other can only be destroyed then.
    Repository(Repository&& other) noexcept
        : _budget(std::move(other._budget)),
          _all(std::move(other._all)),
          _nameSpaces(other._nameSpaces.load()) {}

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
    /// From now on the namespaces are those of the other, which has none then. Those of before stay
    /// as long as this: whoever found one, or a class in one, may keep it. One thread at a time.
    void replaceBy(Repository& other);

private:
    using NameSpaces = std::map<std::string, std::unique_ptr<NameSpace>, NameLess>;

    std::shared_ptr<MemoryBudget> _budget = std::make_shared<MemoryBudget>();
    std::vector<std::unique_ptr<NameSpaces>> _all;
    std::atomic<NameSpaces*> _nameSpaces{_all.emplace_back(std::make_unique<NameSpaces>()).get()};
};

}  // namespace cimhost
