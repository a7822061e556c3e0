#include "cimhost/repository/Repository.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/NearestName.h"

namespace cimhost {

const NameSpace* Repository::find(std::string_view name) const noexcept {
    const NameSpaces& all = *_nameSpaces.load(std::memory_order_acquire);
    const auto found = all.find(trimmedSlashes(name));
    return found == all.end() ? nullptr : found->second.get();
}

NameSpace* Repository::find(std::string_view name) noexcept {
    return const_cast<NameSpace*>(std::as_const(*this).find(name));
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
    for (const auto& [otherName, other] : *_nameSpaces.load(std::memory_order_acquire)) {
        if (other->findClass(name)) return "; namespace " + otherName + " has it";
    }
    return nameSpace.meantClass(name);
}

NameSpace& Repository::make(std::string_view name) {
    if (NameSpace* const nameSpace = find(name)) return *nameSpace;
    const std::string kept(trimmedSlashes(name));
    if (kept.empty()) throw CimError(CimCode::invalidNamespace, "a namespace needs a name");
    _budget->charge(sizeof(NameSpace) + 2 * kept.size());
    auto nameSpace = std::make_unique<NameSpace>(kept, _budget);
    return *_nameSpaces.load()->emplace(kept, std::move(nameSpace)).first->second;
}

std::vector<std::string> Repository::names() const {
    std::vector<std::string> names;
    const NameSpaces& all = *_nameSpaces.load(std::memory_order_acquire);
    names.reserve(all.size());
    for (const auto& [name, nameSpace] : all) names.push_back(name);
    return names;
}

void Repository::replaceBy(Repository& other) {
    auto fresh = std::make_unique<NameSpaces>();
    fresh->swap(*other._nameSpaces.load());
    _budget = other._budget;
    _all.push_back(std::move(fresh));
    _nameSpaces.store(_all.back().get(), std::memory_order_release);
}

}  // namespace cimhost
