#pragma once

#include "cmpicpp/CmpiObjectPath.h"
#include "common/CmpiManagedInstance.h"

#include <functional>
#include <string>

namespace profiles {

/// A class of links, and its two roles.
struct LinkClass {
    const char* name;
    const char* firstRole;
    const char* secondRole;
};

/// The profile that is referenced, and the one that references it.
constexpr LinkClass referencedProfile{"PYL_ReferencedProfile", "Antecedent", "Dependent"};
/// The profile that is extended, and the one that extends it.
constexpr LinkClass extendsProfile{"PYL_ExtendsProfile", "Antecedent", "Dependent"};
/// The profile, and an element that conforms to it.
constexpr LinkClass elementConformsToProfile{"PYL_ElementConformsToProfile", "ConformantStandard",
                                             "ManagedElement"};

/// One link of any of these classes.
class ProfileLink : public PYL::CmpiManagedInstanceAssociation {
public:
    /// Makes the path of an end, each time it is asked for: the host's name may change.
    using End = std::function<CmpiCpp::CmpiObjectPath()>;

    /// The class must outlive the link.
    ProfileLink(const LinkClass& linkClass, std::string nameSpace, End first, End second)
        : _class(linkClass),
          _nameSpace(std::move(nameSpace)),
          _first(std::move(first)),
          _second(std::move(second)) {}

    CmpiCpp::CmpiObjectPath getPath() override;
    CmpiCpp::CmpiInstance getInstance() override;
    CmpiCpp::CmpiName getClassName() override { return _class.name; }
    CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath& path) override;

private:
    const LinkClass& _class;
    std::string _nameSpace;
    End _first;
    End _second;
};

}  // namespace profiles
