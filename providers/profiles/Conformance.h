#pragma once

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"

#include <functional>
#include <memory>
#include <string>

namespace profiles {

/// Finds the elements that conform to the registered profiles.
///
/// They belong to other providers, who are asked for them at every request: so a link never points
/// at what is not there. A class that nobody serves, or whose provider fails, has no elements; a
/// line in the log says so. No lock is held meanwhile. Safe from several threads.
///
/// The links of a namespace are those to its own elements, in the namespace of the registered
/// profiles those to all elements (DSP1033).
class Conformance {
public:
    Conformance(const CmpiCpp::CmpiBroker& broker, Logger& log,
                std::shared_ptr<const PYL::ProfileDB> profiles)
        : _broker(broker), _log(log), _profiles(std::move(profiles)) {}

    /// Adds every link of the namespace.
    void addAll(const CmpiCpp::CmpiContext& context, const std::string& nameSpace,
                PYL::CmpiManagedInstanceCollection& links) const;

    /// Adds the links of the path's namespace that may have the path at one end: no classes are
    /// asked for that cannot matter.
    void addAround(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiObjectPath& path,
                   PYL::CmpiManagedInstanceCollection& links) const;

private:
    /// A profile, and a class that implements it.
    struct Implementation {
        const PYL::PRPDBRec& profile;
        const std::string& nameSpace;
        const std::string& className;
    };
    using Wanted = std::function<bool(const Implementation&)>;

    void _add(const CmpiCpp::CmpiContext& context, const CmpiCpp::CmpiName& linkNameSpace,
              const Wanted& wanted, PYL::CmpiManagedInstanceCollection& links) const;
    std::vector<CmpiCpp::CmpiObjectPath> _elementsOf(const CmpiCpp::CmpiContext& context,
                                                     const Implementation& implementation) const;

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    std::shared_ptr<const PYL::ProfileDB> _profiles;
};

}  // namespace profiles
