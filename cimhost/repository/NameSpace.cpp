#include "cimhost/repository/NameSpace.h"

#include "cimhost/repository/CimError.h"
#include "cimhost/repository/ClassResolver.h"
#include "cimhost/repository/InstanceConformer.h"
#include "cimhost/repository/NearestName.h"

#include <utility>

namespace cimhost {
namespace {

const std::vector<const Class*> noSubclasses;

// The class, its node in the table and its places in the lists.
constexpr std::size_t bytesBesideNode = 128;

}  // namespace

NameSpace::NameSpace(std::string name, std::shared_ptr<MemoryBudget> budget)
    : _name(std::move(name)), _budget(std::move(budget)) {}

const NameSpace::Node* NameSpace::_findNode(std::string_view name) const noexcept {
    const auto found = _classes.find(name);
    return found == _classes.end() ? nullptr : &found->second;
}

const Class* NameSpace::findClass(std::string_view name) const noexcept {
    const Node* const node = _findNode(name);
    return node ? node->definition.get() : nullptr;
}

const QualifierDeclaration* NameSpace::findQualifier(std::string_view name) const noexcept {
    const auto found = _qualifiers.find(name);
    return found == _qualifiers.end() ? nullptr : &found->second;
}

std::string NameSpace::meantClass(std::string_view name) const {
    return didYouMean(name, _classes,
                      [](const auto& each) { return std::string_view(each.first); });
}

std::string NameSpace::meantQualifier(std::string_view name) const {
    return didYouMean(name, _qualifiers,
                      [](const auto& each) { return std::string_view(each.first); });
}

const Class& NameSpace::addClass(Class definition) {
    if (findClass(definition.name)) {
        throw CimError(CimCode::alreadyExists,
                       "class '" + definition.name + "' is defined already");
    }
    _budget->charge(sizeof(Class) + sizeof(Node) + bytesBesideNode + 2 * definition.name.size());
    auto resolved =
        std::make_unique<Class>(ClassResolver(*this, *_budget).resolve(std::move(definition)));
    const auto parent = _classes.find(resolved->superClass);
    Node node;
    if (parent != _classes.end()) node.parent = &parent->second;
    node.definition = std::move(resolved);
    const Class* const added = node.definition.get();
    (parent == _classes.end() ? _topClasses : parent->second.children).push_back(added);
    if (added->isAssociation) _associations.push_back(added);
    _classes.emplace(added->name, std::move(node));
    return *added;
}

void NameSpace::setQualifier(QualifierDeclaration declaration) {
    _qualifiers.insert_or_assign(declaration.name, std::move(declaration));
}

void NameSpace::addInstance(Instance instance) {
    Instance conformed = conformInstance(*this, *_budget, std::move(instance));
    const std::size_t hash = modelPathHash(conformed.path);
    if (findInstance(conformed.path)) {
        throw CimError(CimCode::alreadyExists, "an instance of '" + conformed.className() +
                                                   "' with these keys is there already");
    }
    _instances.push_back(std::move(conformed));
    _instancePlaces.emplace(hash, _instances.size() - 1);
}

const Instance* NameSpace::findInstance(const ObjectPath& path) const {
    const auto [first, last] = _instancePlaces.equal_range(modelPathHash(path));
    for (auto each = first; each != last; ++each) {
        const Instance& instance = _instances[each->second];
        if (sameModelPath(instance.path, path)) return &instance;
    }
    return nullptr;
}

ObjectPath NameSpace::conformPath(ObjectPath path) const {
    cimhost::conformPath(*this, path);
    return path;
}

bool NameSpace::isA(std::string_view className, std::string_view ancestor) const noexcept {
    for (const Node* node = _findNode(className); node; node = node->parent) {
        if (equalNames(node->definition->name, ancestor)) return true;
    }
    return false;
}

const std::vector<const Class*>& NameSpace::subclasses(std::string_view name) const noexcept {
    if (name.empty()) return _topClasses;
    const Node* const node = _findNode(name);
    return node ? node->children : noSubclasses;
}

std::vector<const Class*> NameSpace::withDescendants(std::string_view name) const {
    std::vector<const Class*> classes;
    std::vector<const Class*> pending;  // not the call stack: levels come from outside
    if (const Class* const root = findClass(name)) pending.push_back(root);
    while (!pending.empty()) {
        classes.push_back(pending.back());
        pending.pop_back();
        const auto& children = subclasses(classes.back()->name);
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return classes;
}

std::vector<const QualifierDeclaration*> NameSpace::qualifiers() const {
    std::vector<const QualifierDeclaration*> declarations;
    declarations.reserve(_qualifiers.size());
    for (const auto& [name, declaration] : _qualifiers) declarations.push_back(&declaration);
    return declarations;
}

}  // namespace cimhost
