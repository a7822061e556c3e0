#include "cimhost/objects/Object.h"

#include <cassert>
#include <cstring>

namespace cimhost {

namespace {

constexpr std::size_t handleSize = 16;

void link(ObjectHeader*& list, ObjectHeader& header) noexcept {
    header.next = list;
    header.link = &list;
    if (list) list->link = &header.next;
    list = &header;
}

void unlink(ObjectHeader& header) noexcept {
    if (!header.link) return;
    *header.link = header.next;
    if (header.next) header.next->link = header.link;
    header.link = nullptr;
    header.next = nullptr;
}

// Parts move to the front of the list, so that no chain of parts can exhaust the stack.
void moveParts(ObjectHeader& header, ObjectHeader*& list) noexcept {
    while (ObjectHeader* const part = header.parts) {
        unlink(*part);
        link(list, *part);
    }
}

void destroy(ObjectHeader& header) noexcept {
    auto* const end = header.destroy;
    header.tag = 0;
    end(header);
}

void giveBack(void* block, ObjectScope* scope, std::size_t size) noexcept {
    if (scope) {
        scope->arena().recycle(block, size);
    } else {
        ::operator delete(block);
    }
}

void endUnlinked(ObjectHeader& header) noexcept {
    ObjectScope* const scope = header.scope;
    const std::size_t size = header.size;
    destroy(header);
    giveBack(reinterpret_cast<std::byte*>(&header) - handleSize, scope, size);
}

}  // namespace

ObjectHeader* findHeader(const void* object) noexcept {
    if (!object) return nullptr;
    const void* hdl = nullptr;
    std::memcpy(&hdl, object, sizeof hdl);
    const auto* const expected = static_cast<const std::byte*>(object) + handleSize;
    if (hdl != expected) return nullptr;
    auto* const header = static_cast<ObjectHeader*>(const_cast<void*>(hdl));
    return (header->tag & ~0xffU) == ObjectHeader::liveTag ? header : nullptr;
}

void adopt(ObjectHeader& header, ObjectScope& scope, ObjectHeader* owner) noexcept {
    header.scope = &scope;
    link(owner && owner->scope == &scope ? owner->parts : scope.objects(), header);
}

void endObject(ObjectHeader& object) noexcept {
    unlink(object);
    while (ObjectHeader* const part = object.parts) {
        assert(part->scope && "a part is in the scope of its owner");
        unlink(*part);
        moveParts(*part, object.parts);
        endUnlinked(*part);
    }
    endUnlinked(object);
}

void endObjects(ObjectHeader*& list) noexcept {
    while (list) {
        ObjectHeader& header = *list;
        unlink(header);
        moveParts(header, list);
        destroy(header);
    }
}

}  // namespace cimhost
