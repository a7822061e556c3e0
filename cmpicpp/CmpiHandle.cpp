#include "cmpicpp/CmpiHandle.h"

#include "cmpicpp/detail/Calls.h"

#include <memory>

namespace CmpiCpp {

namespace {

// The status of a release is of no use: the object is gone for us whatever the broker says.
template <typename T>
void releaseClone(void* object) {
    T* const clone = static_cast<T*>(object);
    clone->ft->release(clone);
}

}  // namespace

template <typename T>
CmpiHandle<T> CmpiHandle<T>::clone() const {
    if (!_object) return {};
    // The control block comes first, so that nothing can fail once there is a clone to release.
    auto owner = std::make_unique<CmpiOwner>();
    T* const object = made(ask(_object->ft->clone, _object), "clone");
    owner->object = object;
    owner->release = releaseClone<T>;
    CmpiHandle cloned = borrowed(_broker, object);
    cloned._owner = owner.release();
    return cloned;
}

template <typename T>
void CmpiHandle<T>::_makeWritable() {
    required();
    const bool onlyOwner = _owner != nullptr && _owner->count.load(std::memory_order_acquire) == 1;
    if (!onlyOwner) *this = clone();
}

template <typename T>
void CmpiHandle<T>::throwEmpty() {
    throw CmpiStatus(CMPI_RC_ERR_INVALID_HANDLE, "The value is empty");
}

template <typename T>
void CmpiHandle<T>::_drop(CmpiOwner* owner) noexcept {
    if (owner->count.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    owner->release(owner->object);
    delete owner;
}

template class CmpiHandle<CMPIArgs>;
template class CmpiHandle<CMPIArray>;
template class CmpiHandle<CMPIDateTime>;
template class CmpiHandle<CMPIInstance>;
template class CmpiHandle<CMPIObjectPath>;

}  // namespace CmpiCpp
