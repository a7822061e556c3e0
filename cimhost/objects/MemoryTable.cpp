#include "cimhost/objects/ArgsHandle.h"
#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/BrokerTables.h"
#include "cimhost/objects/DateTimeHandle.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/InstanceHandle.h"
#include "cimhost/objects/MemoryBlocks.h"
#include "cimhost/objects/ObjectPathHandle.h"
#include "cimhost/objects/SelectExpHandle.h"
#include "cimhost/objects/StringHandle.h"

#include <cstring>

namespace cimhost {

namespace {

CMPIGcStat* mark(const CMPIBroker* handle, CMPIStatus* status) noexcept {
    return enter(handle, status,
                 [](const Broker&) { return ObjectScope::begin(ObjectScope::Kind::mark); });
}

CMPIStatus release(const CMPIBroker* handle, const CMPIGcStat* token) noexcept {
    return enter(handle, [&](const Broker&, CMPIrc& code) {
        if (ObjectScope* const scope = ObjectScope::findMark(token)) {
            ObjectScope::end(scope);
        } else {
            code = CMPI_RC_ERR_INVALID_HANDLE;
        }
    });
}

MemoryBlocks* blocksOf(const CMPIBroker* handle) noexcept {
    const Broker* const broker = Broker::find(handle);
    return broker ? &broker->memoryBlocks() : nullptr;
}

void* cmpiMalloc(const CMPIBroker* handle, std::size_t size) noexcept {
    MemoryBlocks* const blocks = blocksOf(handle);
    return blocks ? blocks->allocate(size) : nullptr;
}

void* cmpiCalloc(const CMPIBroker* handle, std::size_t count, std::size_t size) noexcept {
    MemoryBlocks* const blocks = blocksOf(handle);
    return blocks ? blocks->allocateZeroed(count, size) : nullptr;
}

void* cmpiRealloc(const CMPIBroker* handle, void* block, std::size_t size) noexcept {
    MemoryBlocks* const blocks = blocksOf(handle);
    return blocks ? blocks->resize(block, size) : nullptr;
}

char* cmpiStrDup(const CMPIBroker* handle, const char* text) noexcept {
    if (!text) return nullptr;
    const std::size_t size = std::strlen(text) + 1;
    void* const copy = cmpiMalloc(handle, size);
    return copy ? static_cast<char*>(std::memcpy(copy, text, size)) : nullptr;
}

void freeBlock(const CMPIBroker* handle, void* block, MemoryBlocks::Use use) noexcept {
    const Broker* const broker = Broker::find(handle);
    if (!broker || !block || broker->memoryBlocks().free(block, use)) return;
    broker->log().write(BrokerLog::Level::warning, "broker",
                        "a memory block was freed that is not, or no longer, the provider's");
}

void cmpiFree(const CMPIBroker* handle, void* block) noexcept {
    freeBlock(handle, block, MemoryBlocks::Use::block);
}

void freeChars(const CMPIBroker* handle, char* text) noexcept {
    freeBlock(handle, text, MemoryBlocks::Use::text);
}

// Only what a new... function made and this thread's scopes hold may end early.
template <typename Object>
void freeObject(const CMPIBroker* handle, typename Object::Handle* object) noexcept {
    const Broker* const broker = Broker::find(handle);
    if (!broker || !object) return;
    Object* const found = findObject<Object>(object);
    if (found && found->origin == Origin::factory && found->scope->isMine()) {
        endObject(*found);
    } else {
        logWrongEnd(*broker, __builtin_return_address(0), "free", Object::kindOfObject);
    }
}

}  // namespace

const CMPIBrokerMemFT memoryTable = {
    CMPICurrentVersion,
    mark,
    release,
    cmpiMalloc,
    cmpiCalloc,
    cmpiRealloc,
    cmpiStrDup,
    cmpiFree,
    freeObject<InstanceObject>,
    freeObject<ObjectPathObject>,
    freeObject<ArgsObject>,
    freeObject<StringObject>,
    freeObject<ArrayObject>,
    freeObject<DateTimeObject>,
    freeObject<SelectExpObject>,
    freeChars,
};

}  // namespace cimhost
