#pragma once

#include "cimhost/repository/MemoryBudget.h"
#include "cimhost/repository/Schema.h"

namespace cimhost {

class NameSpace;

/// Turns what a class declares into the whole class: everything inherited, qualifiers propagated,
/// keys, embedded objects and parameter directions read off the qualifiers, overrides checked.
class ClassResolver {
public:
    /// Both must outlive the resolver; the budget pays for what is inherited.
    ClassResolver(const NameSpace& nameSpace, MemoryBudget& budget);

    /// Throws CimError as NameSpace::addClass does.
    Class resolve(Class definition) const;

private:
    void _resolveClassQualifiers(Class& definition, const Class* superClass) const;
    void _resolveProperties(Class& definition, const Class* superClass) const;
    void _resolveMethods(Class& definition, const Class* superClass) const;

    const NameSpace& _nameSpace;
    MemoryBudget& _budget;
};

}  // namespace cimhost
