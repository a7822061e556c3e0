#pragma once

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiStatus.h"
#include "pylcommon_export.h"

#include <atomic>
#include <utility>

namespace CmpiCpp {

/// A clone that the wrapper releases, with the number of handles that rely on it.
struct CmpiOwner {
    std::atomic<unsigned> count{1};  ///< the handles that rely on it
    void* object;                    ///< the clone of the broker's
    void (*release)(void* object);   ///< gives it back to the broker
};

/// How the wrapper holds one object of the broker. The base of every encapsulated value type.
///
/// CMPI objects die when the provider's function returns, clones excepted (CMPI 2.1). So a handle
/// is one of:
///  - fresh: made for us within this call and not shared yet; may be written in place;
///  - borrowed: somebody else's, or a copy of a fresh one; cloned before the first write;
///  - owned: a clone, counted by its copies and released by the last; cloned again before a write
///    while it is shared.
/// So copies are cheap until changed, and a change never shows in another copy. A value that is
/// kept beyond the call is made with clone() of its class.
///
/// Copying one object from several threads at once is safe; writing it is not, as for any value.
/// Only a clone allocates: the broker's object and a control block of ours.
template <typename T>
class CmpiHandle {
public:
    CmpiHandle() noexcept = default;

    /// @{
    /// A copy shares the object, and neither is fresh from then on. Moving leaves the other handle
    /// empty and keeps what is fresh so.
    CmpiHandle(const CmpiHandle& other) noexcept
        : _object(other.lend()), _broker(other._broker), _owner(other._owner) {
        if (_owner != nullptr) _owner->count.fetch_add(1, std::memory_order_relaxed);
    }

    CmpiHandle(CmpiHandle&& other) noexcept
        : _object(std::exchange(other._object, nullptr)),
          _broker(other._broker),
          _owner(std::exchange(other._owner, nullptr)),
          _fresh(std::exchange(other._fresh, false)) {}

    CmpiHandle& operator=(const CmpiHandle& other) noexcept {
        CmpiHandle(other)._swap(*this);
        return *this;
    }

    CmpiHandle& operator=(CmpiHandle&& other) noexcept {
        CmpiHandle(std::move(other))._swap(*this);
        return *this;
    }
    /// @}

    ~CmpiHandle() {
        if (_owner != nullptr) _drop(_owner);
    }

    /// A null object makes an empty handle.
    static CmpiHandle fresh(const CMPIBroker* broker, T* object) noexcept {
        CmpiHandle made = borrowed(broker, object);
        made._fresh = object != nullptr;
        return made;
    }

    /// Somebody else's object. A null one makes an empty handle.
    static CmpiHandle borrowed(const CMPIBroker* broker, const T* object) noexcept {
        CmpiHandle made;
        made._broker = broker;
        made._object = const_cast<T*>(object);
        return made;
    }

    /// An owned clone of the object; of an empty handle another empty one.
    /// Throws CmpiStatus when the broker cannot clone.
    CmpiHandle clone() const;

    /// Whether there is an object.
    explicit operator bool() const noexcept { return _object != nullptr; }
    /// The broker that the object belongs to; nullptr where none is known.
    const CMPIBroker* broker() const noexcept { return _broker; }

    /// Whether it is fresh, so that the object lives until the provider's function returns.
    bool isFresh() const noexcept {
        return std::atomic_ref<bool>(_fresh).load(std::memory_order_relaxed);
    }

    /// Whether the object ends with the last handle that relies on it, rather than with the call.
    bool isOwned() const noexcept { return _owner != nullptr; }

    /// The object, or nullptr for an empty value. To be read and not to be kept.
    T* get() const noexcept { return _object; }

    /// The object for somebody who may keep the pointer until the provider's function returns, as
    /// a broker may that is given it: the next change of a fresh object is made to a clone.
    T* lend() const noexcept {
        // Several threads may copy one value at once. A second copy writes nothing, so that they
        // share its cache line.
        const std::atomic_ref<bool> fresh(_fresh);
        if (fresh.load(std::memory_order_relaxed)) fresh.store(false, std::memory_order_relaxed);
        return _object;
    }

    /// The object; an empty value is CmpiStatus CMPI_RC_ERR_INVALID_HANDLE.
    T* required() const {
        if (!_object) [[unlikely]] {
            throwEmpty();
        }
        return _object;
    }

    /// The object for a change that no other copy may see. Throws as required() and clone() do.
    T* writable() {
        if (!_fresh) _makeWritable();
        return _object;
    }

private:
    void _swap(CmpiHandle& other) noexcept {
        std::swap(_object, other._object);
        std::swap(_broker, other._broker);
        std::swap(_owner, other._owner);
        std::swap(_fresh, other._fresh);
    }

    [[noreturn]] static void throwEmpty();
    static void _drop(CmpiOwner* owner) noexcept;
    void _makeWritable();

    T* _object = nullptr;
    const CMPIBroker* _broker = nullptr;
    CmpiOwner* _owner = nullptr;  // of _object
    mutable bool _fresh = false;  // mutable: the first copy ends the right to write
};

extern template class PYL_EXPORT CmpiHandle<CMPIArgs>;
extern template class PYL_EXPORT CmpiHandle<CMPIArray>;
extern template class PYL_EXPORT CmpiHandle<CMPIDateTime>;
extern template class PYL_EXPORT CmpiHandle<CMPIInstance>;
extern template class PYL_EXPORT CmpiHandle<CMPIObjectPath>;

}  // namespace CmpiCpp
