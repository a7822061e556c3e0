#pragma once

#include <memory>
#include <utility>

namespace cimhost {

/// A model that is either our own or shared with values that hold it, and copied before it changes.
/// Not safe from several threads.
template <typename Model>
class CopyOnWrite {
public:
    explicit CopyOnWrite(Model&& model) noexcept : _own(std::move(model)) {}
    explicit CopyOnWrite(std::shared_ptr<const Model> shared) noexcept
        : _shared(std::move(shared)) {}

    const Model& read() const noexcept { return _shared ? *_shared : _own; }

    Model& write() {
        if (_shared) _copyShared();
        return _own;
    }

    /// The model for others to keep. It stays as it is now.
    std::shared_ptr<const Model> share() {
        if (!_shared) _shared = std::make_shared<const Model>(std::move(_own));
        return _shared;
    }

private:
    void _copyShared() {
        _own = *_shared;
        _shared.reset();
    }

    Model _own;
    std::shared_ptr<const Model> _shared;
};

}  // namespace cimhost
