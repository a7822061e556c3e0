#pragma once

#include "cimhost/repository/Instance.h"
#include "cimhost/repository/MemoryBudget.h"
#include "cimhost/repository/Names.h"
#include "cimhost/repository/Schema.h"

#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace cimhost {

/// One CIM namespace: its qualifier declarations, classes and static instances.
/// Filled by the MOF reader before the server starts; from then on read by any number of threads.
class NameSpace {
public:
    /// The budget pays for what is added; namespaces of one repository share theirs.
    explicit NameSpace(std::string name,
                       std::shared_ptr<MemoryBudget> budget = std::make_shared<MemoryBudget>());

    const std::string& name() const noexcept { return _name; }

    /// The class or declaration with this name, or nullptr. Owned by the namespace.
    const Class* findClass(std::string_view name) const noexcept;
    const QualifierDeclaration* findQualifier(std::string_view name) const noexcept;

    // For a name that is not here, the words that tell which one was meant (NearestName.h).
    std::string meantClass(std::string_view name) const;
    std::string meantQualifier(std::string_view name) const;

    /// Resolves the class against its superclass and the qualifier declarations, and adds it.
    /// The definition holds only what the class itself declares.
    /// A member that redeclares an inherited one overrides it, with or without the Override
    /// qualifier. Its class origin is then this class. Nothing is added when it fails. Throws
    /// CimError: alreadyExists; invalidSuperclass; invalidParameter for a broken override, an
    /// undeclared or misplaced qualifier, or a key that a subclass adds to a keyed superclass;
    /// serverLimitsExceeded when the budget is spent.
    const Class& addClass(Class definition);

    /// Adds or, when there is one of this name already, replaces a declaration.
    void setQualifier(QualifierDeclaration declaration);

    /// Adds a static instance: its values converted to the declared types, names spelled as the
    /// class has them, defaults filled in, keys taken into the path. Throws CimError: invalidClass
    /// (also for an abstract class), alreadyExists, noSuchProperty, typeMismatch; invalidParameter
    /// for a key without a value or a property given twice; serverLimitsExceeded when the budget is
    /// spent.
    void addInstance(Instance instance);

    /// The static instance with this model path, or nullptr. Good until the next one is added.
    const Instance* findInstance(const ObjectPath& path) const;

    /// The path with names spelled and keys typed as its class has them; untouched when the class
    /// is not known. Throws CimError: noSuchProperty for a key that the class has not,
    /// typeMismatch.
    ObjectPath conformPath(ObjectPath path) const;

    /// True when the class is the ancestor or one of its descendants; false for an unknown class.
    bool isA(std::string_view className, std::string_view ancestor) const noexcept;

    /// Direct subclasses, in order of definition; those at the top for an empty name.
    const std::vector<const Class*>& subclasses(std::string_view name) const noexcept;

    /// The class itself and all its descendants, depth first. Empty for an unknown class.
    std::vector<const Class*> withDescendants(std::string_view name) const;

    /// All in order of name.
    std::vector<const QualifierDeclaration*> qualifiers() const;

    const std::vector<Instance>& instances() const noexcept { return _instances; }
    std::size_t classCount() const noexcept { return _classes.size(); }

    /// All association classes, in order of definition.
    const std::vector<const Class*>& associations() const noexcept { return _associations; }

    /// Charged by whoever reads definitions, into this namespace or against it.
    MemoryBudget& budget() const noexcept { return *_budget; }

private:
    struct Node {
        std::unique_ptr<Class> definition;
        std::vector<const Class*> children;
        const Node* parent = nullptr;
    };

    const Node* _findNode(std::string_view name) const noexcept;

    std::string _name;
    std::shared_ptr<MemoryBudget> _budget;
    std::unordered_map<std::string, Node, NameHash, NameEqual> _classes;
    std::map<std::string, QualifierDeclaration, NameLess> _qualifiers;
    std::vector<const Class*> _topClasses;
    std::vector<const Class*> _associations;
    std::vector<Instance> _instances;
    std::unordered_multimap<std::size_t, std::size_t> _instancePlaces;  // by hash of the model path
};

}  // namespace cimhost
