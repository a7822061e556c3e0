#pragma once

#include <functional>
#include <memory>
#include <string>

#include "cmpicpp/CmpiBroker.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiObjectPath.h"
#include "common/CmpiManagedInstanceCollection.h"
#include "common/ProfileDB.h"
#include "platform/logger/Logger.h"

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
    Conformance(CmpiCpp::CmpiBroker const& broker, Logger& log,
                std::shared_ptr<PYL::ProfileDB const> profiles)
        : _broker(broker), _log(log), _profiles(std::move(profiles)) {}

    /// Adds every link of the namespace.
    void addAll(CmpiCpp::CmpiContext const& context, std::string const& nameSpace,
                PYL::CmpiManagedInstanceCollection& links) const;

    /// Adds the links of the path's namespace that may have the path at one end: no classes are
    /// asked for that cannot matter.
    void addAround(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiObjectPath const& path,
                   PYL::CmpiManagedInstanceCollection& links) const;

private:
    /// A profile, and a class that implements it.
    struct Implementation {
        PYL::PRPDBRec const& profile;
        std::string const& nameSpace;
        std::string const& className;
    };
    using Wanted = std::function<bool(Implementation const&)>;

    void _add(CmpiCpp::CmpiContext const& context, CmpiCpp::CmpiName const& linkNameSpace,
              Wanted const& wanted, PYL::CmpiManagedInstanceCollection& links) const;
    std::vector<CmpiCpp::CmpiObjectPath> _elementsOf(CmpiCpp::CmpiContext const& context,
                                                     Implementation const& implementation) const;

    CmpiCpp::CmpiBroker _broker;
    Logger _log;
    std::shared_ptr<PYL::ProfileDB const> _profiles;
};

}  // namespace profiles
