#pragma once

#include "cimhost/objects/Arena.h"
#include "cimhost/objects/BrokerTables.h"

namespace cimhost {

class Broker;
struct ObjectHeader;

/// A lifetime of objects: that of a call, between mark and release, of an attached thread, or of a
/// thread that has none of these. Scopes of a thread form a stack. Not safe from several threads.
class ObjectScope {
public:
    enum class Kind { call, mark, attached, implicit };

    /// The innermost scope of this thread, for an object of this kind. Where there is none, one is
    /// made that lasts until the thread ends. Throws std::bad_alloc.
    static ObjectScope& current(const Broker& broker, ObjectKind kind);

    /// Begins a scope on this thread, within the innermost one. Throws std::bad_alloc.
    static ObjectScope* begin(Kind kind);

    /// Ends the scope and all that began within it.
    static void end(const ObjectScope* scope) noexcept;

    /// The scope with this address that a provider may end now: a mark of the call in progress.
    /// Nullptr when there is none; the pointer is only compared.
    static ObjectScope* findMark(const void* token) noexcept;

    /// The scope with this address anywhere on this thread, or nullptr.
    static ObjectScope* find(const void* scope) noexcept;

    /// True when the scope is of this thread. The scope must not have ended.
    bool isMine() const noexcept { return _thread == &threadMark; }

    Arena& arena() noexcept { return _arena; }
    ObjectHeader*& objects() noexcept { return _objects; }

private:
    ObjectScope(Kind kind, ObjectScope* outer) noexcept
        : _outer(outer), _thread(&threadMark), _kind(kind) {}
    ~ObjectScope();

    static ObjectScope& _makeImplicit(const Broker& broker, ObjectKind kind);
    friend struct ThreadEnd;

    inline static constinit thread_local ObjectScope* innermost = nullptr;
    inline static constinit thread_local char threadMark = 0;  ///< its address tells threads apart

    Arena _arena;
    ObjectHeader* _objects = nullptr;
    ObjectScope* _outer;
    const char* _thread;
    Kind _kind;
};

inline ObjectScope& ObjectScope::current(const Broker& broker, ObjectKind kind) {
    return innermost ? *innermost : _makeImplicit(broker, kind);
}

}  // namespace cimhost
