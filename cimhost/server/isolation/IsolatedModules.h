#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/operations/InstanceSource.h"
#include "cimhost/server/isolation/LinkMessage.h"
#include "cimhost/server/isolation/ModuleProcess.h"
#include "cimhost/server/isolation/StandIn.h"

#include <chrono>
#include <list>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace cimhost {

/// Sets the properties that tell the state of a module's process.
void describeProcess(const ModuleProcess::State& state, Instance& instance);

/// All modules, each in a process of its own. As a source of instances it serves
/// CIMHOST_ModuleProcess where a namespace has that class: one for each module.
class IsolatedModules final : public InstanceSource {
public:
    /// All outlive this.
    IsolatedModules(const Broker& broker, IsolationSettings settings);
    ~IsolatedModules() override;
    IsolatedModules(const IsolatedModules&) = delete;
    IsolatedModules& operator=(const IsolatedModules&) = delete;

    /// Stands in for every registered module. Before its first use.
    void standInFor(ModuleHost& modules);

    /// The factories of a stand-in for one more module, made when it is not there yet.
    StaticModule standInFor(const std::string& module);

    /// Has these modules, or all, run in new processes from the next request on.
    void replace(const std::set<std::string>& modules);
    void replaceAll();
    /// As ModuleProcess.
    bool releaseReplaced();
    /// Of the process of this module; as before its start where there is no such module.
    ModuleProcess::State stateOf(const std::string& module) const;

    /// Kills those in which a request still runs. True when there were any.
    bool killBusy();

    /// Ends the processes. False when one had to be killed.
    bool stop(std::chrono::milliseconds patience);

    bool serves(const Target& target) const noexcept override;
    void visit(const Target& target, const VisitInstance& visit) const override;
    void visitAssociations(const Target& end, const VisitInstance& visit) const override;
    std::optional<Instance> find(const ObjectPath& path) const override;

private:
    /// A module and what its process asks this one.
    struct Hosted {
        Hosted(IsolatedModules& all, const std::string& module);

        LinkHandler upCalls;
        ModuleProcess process;
    };

    std::vector<Hosted*> _all() const;
    StandIn& _standIn(Hosted& hosted, const char* provider);
    void _answer(const LinkNotes& notes, const CimXmlRequest& request, CimXmlReply& reply);
    void _export(const LinkNotes& notes, const CimXmlRequest& request, CimXmlReply& reply);

    const Broker& _broker;
    IsolationSettings _settings;
    mutable std::mutex _mutex;     ///< guards the two below
    std::list<StandIn> _standIns;  ///< outlive the processes, which call them
    std::map<std::string, std::unique_ptr<Hosted>> _modules;
};

}  // namespace cimhost
