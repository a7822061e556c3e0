#pragma once

#include "cimhost/modules/ModuleHost.h"
#include "cimhost/operations/InstanceSource.h"
#include "cimhost/server/isolation/IsolatedModules.h"

#include <filesystem>
#include <string>
#include <vector>

namespace cimhost {

/// What is registered, for clients: CIMHOST_Module and CIMHOST_Provider where a namespace has these
/// classes, as things are when they are asked for. What is wrong with a module is looked up then,
/// without running code of it. Safe from several threads.
class ModuleCatalogue final : public InstanceSource {
public:
    /// `isolated`, where modules run in processes of their own. All outlive this.
    ModuleCatalogue(const Repository& repository, const ModuleHost& modules,
                    const IsolatedModules* isolated, std::vector<std::filesystem::path> folders)
        : _repository(repository),
          _modules(modules),
          _isolated(isolated),
          _folders(std::move(folders)) {}

    bool serves(const Target& target) const noexcept override;
    void visit(const Target& target, const VisitInstance& visit) const override;
    void visitAssociations(const Target& end, const VisitInstance& visit) const override;
    std::optional<Instance> find(const ObjectPath& path) const override;

private:
    Instance _describe(const std::string& module, const Target& target) const;
    void _describeProcess(const std::string& module, Instance& instance) const;
    std::vector<std::string> _findings(const std::string& module) const;
    void _visitModules(const Target& target, const VisitInstance& visit) const;
    void _visitProviders(const Target& target, const VisitInstance& visit) const;

    const Repository& _repository;
    const ModuleHost& _modules;
    const IsolatedModules* _isolated;
    std::vector<std::filesystem::path> _folders;
};

}  // namespace cimhost
