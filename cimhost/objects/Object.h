#pragma once

#include "cimhost/objects/Broker.h"
#include "cimhost/objects/ObjectScope.h"
#include "cmpi/cmpift.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <utility>

/// How the objects behind handles are made, found again and ended.
///
/// A handle is the first 16 bytes of its object; its `hdl` is the address of the header that
/// follows. By that an object of ours is told from a foreign one without looking past the handle.
namespace cimhost {

/// Who may end an object before its scope does.
enum class Origin : std::uint8_t {
    broker,   ///< passed in or returned by an up-call: nobody
    factory,  ///< made by a new... function: the provider, with the matching free... function
    part,     ///< got from another object: nobody
    clone,    ///< the provider, with release
};

struct ObjectHeader {
    static constexpr std::uint32_t liveTag = 0x4d504900;  ///< the low byte is the kind

    ObjectHeader() = default;
    // A copy is another object: what is told here does not hold for it.
    ObjectHeader(const ObjectHeader&) noexcept {}
    ObjectHeader& operator=(const ObjectHeader&) = delete;

    bool is(ObjectKind kind) const noexcept {
        return tag == (liveTag | static_cast<std::uint32_t>(kind));
    }
    ObjectKind kind() const noexcept { return static_cast<ObjectKind>(tag & 0xffU); }

    std::uint32_t tag = 0;
    std::uint16_t size = 0;  ///< bytes of the block
    Origin origin = Origin::broker;
    const Broker* broker = nullptr;
    ObjectScope* scope = nullptr;  ///< null for a clone
    void (*destroy)(ObjectHeader&) noexcept = nullptr;
    ObjectHeader** link = nullptr;  ///< the pointer that points here
    ObjectHeader* next = nullptr;
    ObjectHeader* parts = nullptr;  ///< objects that end with this one
};

/// What an object is made for.
struct Home {
    const Broker& broker;
    Origin origin = Origin::broker;
    ObjectHeader* owner = nullptr;  ///< of a part
};

/// The home of what a getter of this object returns.
inline Home partOf(ObjectHeader& owner) noexcept { return {*owner.broker, Origin::part, &owner}; }

/// Base of every object: the C handle and the header. `Table` has a static constant `table`.
template <typename HandleType, ObjectKind objectKind>
struct ObjectBase : HandleType, ObjectHeader {
    using Handle = HandleType;
    static constexpr ObjectKind kindOfObject = objectKind;

    ObjectBase() noexcept : HandleType{} {}
};

/// The header of any object of ours, or nullptr for a null or foreign pointer. Reads 16 bytes.
ObjectHeader* findHeader(const void* object) noexcept;

/// The object behind a handle, or nullptr when the handle is null, foreign, of another kind or
/// ended.
template <typename Object>
Object* findObject(const typename Object::Handle* handle) noexcept {
    if (!handle) return nullptr;
    // The tables pass "this" as a pointer to const; the objects themselves never are.
    auto* const object = static_cast<Object*>(const_cast<typename Object::Handle*>(handle));
    const auto* const header = static_cast<const ObjectHeader*>(object);
    if (handle->hdl != header || !header->is(Object::kindOfObject)) return nullptr;
    return object;
}

/// Links a fresh object into its owner's parts or its scope.
void adopt(ObjectHeader& header, ObjectScope& scope, ObjectHeader* owner) noexcept;

/// Ends one object and its parts. A scope's memory is used again, a clone's is freed.
void endObject(ObjectHeader& header) noexcept;

/// Ends a list of objects whose memory goes with their scope.
void endObjects(ObjectHeader*& list) noexcept;

template <typename Object>
void destroyObject(ObjectHeader& header) noexcept {
    static_cast<Object&>(header).~Object();
}

template <typename Object>
void setUp(Object& object, const Broker& broker, Origin origin, std::size_t size) noexcept {
    ObjectHeader& header = object;
    header.tag = ObjectHeader::liveTag | static_cast<std::uint32_t>(Object::kindOfObject);
    header.size = static_cast<std::uint16_t>(size);
    header.origin = origin;
    header.broker = &broker;
    header.destroy = destroyObject<Object>;
    auto& handle = static_cast<typename Object::Handle&>(object);
    handle.hdl = &header;
    handle.ft = static_cast<decltype(handle.ft)>(broker.objectTable(Object::kindOfObject));
}

/// Makes an object in the current scope, with `extra` bytes behind it.
/// Throws std::bad_alloc and what the constructor throws.
template <typename Object, typename... Arguments>
Object& makeSized(const Home& home, std::size_t extra, Arguments&&... arguments) {
    static_assert(sizeof(Object) <= Arena::largestBlock && alignof(Object) <= 16);
    const std::size_t size = sizeof(Object) + extra;
    ObjectScope& scope = ObjectScope::current(home.broker, Object::kindOfObject);
    void* const block = scope.arena().allocate(size);
    Object* object = nullptr;
    try {
        object = ::new (block) Object(std::forward<Arguments>(arguments)...);
    } catch (...) {
        scope.arena().recycle(block, size);
        throw;
    }
    setUp(*object, home.broker, home.origin, size);
    adopt(*object, scope, home.owner);
    return *object;
}

template <typename Object, typename... Arguments>
Object& make(const Home& home, Arguments&&... arguments) {
    return makeSized<Object>(home, 0, std::forward<Arguments>(arguments)...);
}

/// Makes an object that lives until it is released.
template <typename Object, typename... Arguments>
Object& makeClone(const Broker& broker, std::size_t extra, Arguments&&... arguments) {
    const std::size_t size = sizeof(Object) + extra;
    void* const block = ::operator new(size);
    Object* object = nullptr;
    try {
        object = ::new (block) Object(std::forward<Arguments>(arguments)...);
    } catch (...) {
        ::operator delete(block);
        throw;
    }
    setUp(*object, broker, Origin::clone, size);
    return *object;
}

}  // namespace cimhost
