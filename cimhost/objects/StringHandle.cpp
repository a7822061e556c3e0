#include "cimhost/objects/StringHandle.h"

#include "cimhost/objects/Codepage.h"
#include "cimhost/objects/MemoryBlocks.h"

#include <cstring>

namespace cimhost {

namespace {

std::size_t roomFor(std::string_view content) noexcept {
    const std::size_t room = content.size() + 1;
    return sizeof(StringObject) + room <= Arena::largestBlock ? room : 0;
}

const char* getCharPtr(const CMPIString* string, CMPIStatus* status) noexcept {
    return enter<StringObject>(string, status, [](StringObject& object) { return object.text; });
}

CMPIString* clone(const CMPIString* string, CMPIStatus* status) noexcept {
    return enter<StringObject>(string, status, [](StringObject& object) {
        const std::size_t room = roomFor(object.view());
        auto& copy = makeClone<StringObject>(*object.broker, room, object.view(), room);
        CloneCount::made();
        return &copy;
    });
}

char* newCharsCP(const CMPIString* string, CMPICodepageID codepage, CMPIStatus* status) noexcept {
    return enter<StringObject>(string, status, [&](StringObject& object) {
        return object.broker->memoryBlocks().copyText(fromUtf8(object.view(), codepage));
    });
}

}  // namespace

const CMPIStringFT StringObject::table = {
    CMPICurrentVersion, releaseObject<StringObject>, clone, getCharPtr, newCharsCP,
};

StringObject::StringObject(std::string_view content, std::size_t room) : length(content.size()) {
    char* const target = room ? reinterpret_cast<char*>(this + 1) : new char[content.size() + 1];
    if (length != 0) std::memcpy(target, content.data(), length);
    target[length] = '\0';
    text = target;
}

StringObject::~StringObject() {
    if (roomFor(view()) == 0) delete[] text;
}

StringObject& makeText(const Home& home, std::string_view content) {
    const std::size_t room = roomFor(content);
    return makeSized<StringObject>(home, room, content, room);
}

CMPIString* makeString(const Broker& broker, std::string_view text) {
    return &makeText({broker}, text);
}

}  // namespace cimhost
