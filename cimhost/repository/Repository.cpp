#include "cimhost/repository/Repository.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NearestName.h"

namespace cimhost {

const NameSpace* Repository::find(std::string_view name) const noexcept {
    const auto found = _nameSpaces.find(trimmedSlashes(name));
    return found == _nameSpaces.end() ? nullptr : found->second.get();
}

NameSpace* Repository::find(std::string_view name) noexcept {
    const auto found = _nameSpaces.find(trimmedSlashes(name));
    return found == _nameSpaces.end() ? nullptr : found->second.get();
}

const NameSpace& Repository::get(std::string_view name) const {
    if (const NameSpace* const nameSpace = find(name)) return *nameSpace;
    throw CimError(CimCode::invalidNamespace,
                   "namespace '" + std::string(name) + "' is not known" + meantNameSpace(name));
}

std::string Repository::meantNameSpace(std::string_view name) const {
    return didYouMean(trimmedSlashes(name), names());
}

std::string Repository::meantClass(const NameSpace& nameSpace, std::string_view name) const {
    for (const auto& [otherName, other] : _nameSpaces) {
        if (other->findClass(name)) return "; namespace " + otherName + " has it";
    }
    return nameSpace.meantClass(name);
}

NameSpace& Repository::make(std::string_view name) {
    if (NameSpace* const nameSpace = find(name)) return *nameSpace;
    const std::string trimmed(trimmedSlashes(name));
    if (trimmed.empty()) throw CimError(CimCode::invalidNamespace, "a namespace needs a name");
    _budget->charge(sizeof(NameSpace) + 2 * trimmed.size());
    auto nameSpace = std::make_unique<NameSpace>(trimmed, _budget);
    return *_nameSpaces.emplace(trimmed, std::move(nameSpace)).first->second;
}

std::vector<std::string> Repository::names() const {
    std::vector<std::string> names;
    names.reserve(_nameSpaces.size());
    for (const auto& [name, nameSpace] : _nameSpaces) names.push_back(name);
    return names;
}

}  // namespace cimhost
