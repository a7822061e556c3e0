#pragma once

#include "cimhost/operations/InstanceSource.h"
#include "cimhost/repository/Repository.h"

namespace cimhost {

/// The instances that can only be read: static ones, which came with the MOF, and built-in ones, of
/// classes that have no static ones.
class HostInstances final : public InstanceSource {
public:
    explicit HostInstances(const Repository& repository) : _repository(repository) {}

    bool serves(const Target& target) const noexcept override;
    void visit(const Target& target, const VisitInstance& visit) const override;
    /// Those are the static ones, whatever their class.
    void visitAssociations(const Target& end, const VisitInstance& visit) const override;
    std::optional<Instance> find(const ObjectPath& path) const override;

private:
    std::vector<Instance> _builtIn(const NameSpace& nameSpace, const Class& definition) const;

    const Repository& _repository;
};

}  // namespace cimhost
