#pragma once

#include "cimhost/repository/MemoryBudget.h"
#include "cimhost/repository/Schema.h"

#include <memory>

/// One property or method of a class, resolved against the one it overrides.
/// `inherited` is the superclass's element of the same name, or nullptr. A redeclared element
/// counts as an override even without the Override qualifier, as object managers in use have it.
/// Each throws CimError invalidParameter for a broken rule.
namespace cimhost {

class NameSpace;

struct ElementContext {
    const NameSpace& nameSpace;
    MemoryBudget& budget;
    const Class& definition;
};

std::shared_ptr<const PropertyDefinition> resolveProperty(const ElementContext& context,
                                                          const PropertyDefinition& declared,
                                                          const PropertyDefinition* inherited);

std::shared_ptr<const MethodDefinition> resolveMethod(const ElementContext& context,
                                                      const MethodDefinition& declared,
                                                      const MethodDefinition* inherited);

}  // namespace cimhost
