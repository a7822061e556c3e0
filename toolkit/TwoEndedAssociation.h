#pragma once

#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiName.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/CmpiManagedInstance.h"
#include "common/PYLConstants.h"
#include "pylcommon_export.h"

#include <functional>
#include <string>

namespace PYL {

/// A class of links, and the names of its two reference properties, which are its keys. The names
/// are literals: they must outlive every link of the class.
struct AssociationClass {
    const char* name;        ///< of the class
    const char* firstRole;   ///< the reference to the first end
    const char* secondRole;  ///< the reference to the second end
};

/// A link between two objects, by the paths of its ends.
///
///     constexpr AssociationClass fanClass{"PYL_SystemFan", "GroupComponent", "PartComponent"};
///     add(_instances,
///         std::make_unique<TwoEndedAssociation>(fanClass, PYLUtil::getComputerSystemPath,
///                                               [id] { return fanPath(id); }));
///
/// A collection calls it under its lock, so the ends must not ask that collection. Safe from
/// several threads as far as the ends are.
class PYL_EXPORT TwoEndedAssociation : public CmpiManagedInstanceAssociation {
public:
    /// Makes the path of an end each time that it is asked for: the host's name may change. What it
    /// throws goes on to whoever asked the link.
    using End = std::function<CmpiCpp::CmpiObjectPath()>;

    /// Asks for no end yet.
    TwoEndedAssociation(const AssociationClass& associationClass, End first, End second,
                        std::string nameSpace = BaseServerNameSpace);

    /// On this host, with both ends as keys.
    CmpiCpp::CmpiObjectPath getPath() override;

    /// Both ends as references.
    CmpiCpp::CmpiInstance getInstance() override;

    CmpiCpp::CmpiName getClassName() override;

    /// The other end, or the empty path when `path` is neither. Host, namespace, class and keys
    /// count.
    CmpiCpp::CmpiObjectPath getAssociatedPath(const CmpiCpp::CmpiObjectPath& path) override;

private:
    AssociationClass _class;
    End _first;
    End _second;
    std::string _nameSpace;
};

}  // namespace PYL
