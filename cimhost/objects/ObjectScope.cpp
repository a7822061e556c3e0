#include "cimhost/objects/ObjectScope.h"

#include "cimhost/objects/Broker.h"
#include "cimhost/objects/MannerTables.h"
#include "cimhost/objects/Object.h"

#include <cassert>
#include <new>

namespace cimhost {

namespace {

// Code that runs after the last thread-local object is gone gets no scope: nobody would end it.
constinit thread_local bool threadHasEnded = false;

}  // namespace

/// Ends at thread exit what the thread left open.
struct ThreadEnd {
    ~ThreadEnd() {
        while (ObjectScope::innermost) ObjectScope::end(ObjectScope::innermost);
        threadHasEnded = true;
    }
    void arm() noexcept {}
};

namespace {

thread_local ThreadEnd threadEnd;

}  // namespace

ObjectScope::~ObjectScope() { endObjects(_objects); }

ObjectScope& ObjectScope::_makeImplicit(const Broker& broker, ObjectKind kind) {
    if ((kind == ObjectKind::objectPath || kind == ObjectKind::instance) &&
        broker.manner().has(Habit::crashesOnUnattachedThreads)) {
        endAs(broker, Habit::crashesOnUnattachedThreads);
    }
    if (threadHasEnded) throw std::bad_alloc();
    ObjectScope* const scope = begin(Kind::implicit);
    broker.warnOfStrayThread();
    return *scope;
}

ObjectScope* ObjectScope::begin(Kind kind) {
    if (kind != Kind::call) threadEnd.arm();
    innermost = new ObjectScope(kind, innermost);
    return innermost;
}

void ObjectScope::end(const ObjectScope* scope) noexcept {
    bool last = false;
    while (innermost && !last) {
        ObjectScope* const ended = innermost;
        last = ended == scope;
        innermost = ended->_outer;
        delete ended;
    }
}

ObjectScope* ObjectScope::findMark(const void* token) noexcept {
    for (ObjectScope* scope = innermost; scope && scope->_kind == Kind::mark;
         scope = scope->_outer) {
        if (scope == token) return scope;
    }
    return nullptr;
}

ObjectScope* ObjectScope::find(const void* token) noexcept {
    for (ObjectScope* scope = innermost; scope; scope = scope->_outer) {
        if (scope == token) return scope;
    }
    return nullptr;
}

CallScope::CallScope() : _scope(ObjectScope::begin(ObjectScope::Kind::call)) {}

CallScope::~CallScope() {
    assert(ObjectScope::find(_scope) && "a scope ends on the thread that began it");
    ObjectScope::end(_scope);
}

}  // namespace cimhost
