#pragma once

#include "cimhost/objects/CopyOnWrite.h"
#include "cimhost/objects/Object.h"
#include "cimhost/repository/Instance.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// How key properties and the keys of the path follow each other is told in Objects.h.
struct InstanceObject : ObjectBase<CMPIInstance, ObjectKind::instance> {
    static const CMPIInstanceFT table;

    explicit InstanceObject(Instance&& instance) : _model(std::move(instance)) {}
    explicit InstanceObject(std::shared_ptr<const Instance> instance)
        : _model(std::move(instance)) {}

    const Instance& read() const noexcept { return _model.read(); }

    /// The instance as others get it: a path without keys is completed first.
    const Instance& complete();
    std::shared_ptr<const Instance> share();

    /// Sets the property, unless the filter leaves it out, and the key of this name.
    void set(std::string_view name, Value value, std::string_view classOrigin);
    void setPath(ObjectPath path);
    /// Drops what is not listed, now and from now on; nothing when there is no list.
    void setFilter(std::optional<std::vector<std::string>> names);

private:
    bool _isFiltered(std::string_view name) const noexcept { return _filter && !_isListed(name); }
    bool _isListed(std::string_view name) const noexcept;
    void _setKeyProperties(Instance& instance);

    CopyOnWrite<Instance> _model;
    std::optional<std::vector<std::string>> _filter;
};

/// An instance with this path, its keys as properties.
Instance instanceFor(const ObjectPath& path);

}  // namespace cimhost
