#include "cimhost/cimxml/XmlParser.h"

#include <expat.h>
#include <malloc.h>

#include <cstdlib>
#include <exception>
#include <memory>
#include <new>
#include <random>
#include <type_traits>
#include <utility>

namespace cimhost {
namespace {

// What expat may still take on this thread. A document with a million attributes would otherwise
// cost hundreds of megabytes before the first of them is reported.
thread_local std::size_t memoryLeft = 0;

void* allocate(std::size_t size) noexcept {
    if (size > memoryLeft) return nullptr;
    void* const block = std::malloc(size);
    if (!block) return nullptr;
    // Rounding up may take more than is left; the next request is then refused.
    const std::size_t taken = malloc_usable_size(block);
    memoryLeft -= taken < memoryLeft ? taken : memoryLeft;
    return block;
}

void release(void* block) noexcept {
    memoryLeft += malloc_usable_size(block);
    std::free(block);
}

void* reallocate(void* block, std::size_t size) noexcept {
    const std::size_t before = malloc_usable_size(block);
    if (size > memoryLeft + before) return nullptr;
    void* const moved = std::realloc(block, size);
    if (!moved) return nullptr;
    const std::size_t after = malloc_usable_size(moved);
    memoryLeft = memoryLeft + before > after ? memoryLeft + before - after : 0;
    return moved;
}

/// Gives expat the memory that it has left, while it reads.
class MemoryAllowance {
public:
    explicit MemoryAllowance(std::size_t& memory)
        : _memory(memory), _outer(std::exchange(memoryLeft, memory)) {}
    ~MemoryAllowance() { _memory = std::exchange(memoryLeft, _outer); }
    MemoryAllowance(const MemoryAllowance&) = delete;
    MemoryAllowance& operator=(const MemoryAllowance&) = delete;

private:
    std::size_t& _memory;
    std::size_t _outer;
};

/// Makes expat's hash tables unpredictable. Left alone, expat asks the system anew for each parser,
/// which takes a quarter of the time of a small request.
unsigned long hashSalt() {
    static const unsigned long salt = [] {
        std::random_device random;
        return (static_cast<unsigned long>(random()) << 16 ^ random()) | 1;
    }();
    return salt;
}

}  // namespace

/// Stands between expat and the events: no exception may pass through a C library.
class XmlPieces::Reading {
public:
    Reading(std::size_t memory, XmlEvents& events) : _memory(memory), _events(events) {
        const MemoryAllowance allowance(_memory);
        _parser = _make();
        XML_SetUserData(_parser.get(), this);
        XML_SetElementHandler(_parser.get(), _start, _end);
        XML_SetCharacterDataHandler(_parser.get(), _characters);
        XML_SetXmlDeclHandler(_parser.get(), _declaration);
        XML_SetStartDoctypeDeclHandler(_parser.get(), _documentType);
    }
    ~Reading() {
        const MemoryAllowance allowance(_memory);
        _parser.reset();
    }
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

    void read(std::string_view text, bool isLast) {
        const MemoryAllowance allowance(_memory);
        const bool isGood = _feed(text, isLast);
        if (_failure) std::rethrow_exception(_failure);
        if (isGood) return;
        const XML_Error code = XML_GetErrorCode(_parser.get());
        if (code == XML_ERROR_NO_MEMORY) {
            throw XmlError(XmlError::Kind::notValid, "the document takes too much memory");
        }
        throw XmlError(XmlError::Kind::notWellFormed, XML_ErrorString(code));
    }

private:
    struct Deleter {
        void operator()(XML_Parser parser) const noexcept { XML_ParserFree(parser); }
    };
    using Handle = std::unique_ptr<std::remove_pointer_t<XML_Parser>, Deleter>;

    static Handle _make() {
        static const XML_Memory_Handling_Suite memory{allocate, reallocate, release};
        Handle parser(XML_ParserCreate_MM("UTF-8", &memory, nullptr));
        if (!parser) throw std::bad_alloc();
        XML_SetHashSalt(parser.get(), hashSalt());
        return parser;
    }

    /// False where expat stopped. Goes in blocks, since expat copies what it is given.
    bool _feed(std::string_view text, bool isLast) const {
        constexpr std::size_t block = 64 * 1024;
        const XML_Parser parser = _parser.get();
        while (text.size() > block) {
            if (XML_Parse(parser, text.data(), block, XML_FALSE) != XML_STATUS_OK) return false;
            text.remove_prefix(block);
        }
        return XML_Parse(parser, text.data(), static_cast<int>(text.size()),
                         isLast ? XML_TRUE : XML_FALSE) == XML_STATUS_OK;
    }

    static void _guard(void* self, auto&& body) noexcept {
        Reading& reading = *static_cast<Reading*>(self);
        // Expat may still report an event or two after it was told to stop.
        if (reading._failure) return;
        try {
            body(reading._events);
        } catch (...) {
            reading._failure = std::current_exception();
            XML_StopParser(reading._parser.get(), XML_FALSE);
        }
    }

    static void XMLCALL _start(void* self, const XML_Char* name, const XML_Char** attributes) {
        _guard(self, [&](XmlEvents& to) { to.startElement(name, attributes); });
    }

    static void XMLCALL _end(void* self, const XML_Char*) {
        _guard(self, [](XmlEvents& to) { to.endElement(); });
    }

    static void XMLCALL _characters(void* self, const XML_Char* text, int size) {
        _guard(self, [&](XmlEvents& to) { to.characters({text, static_cast<std::size_t>(size)}); });
    }

    static void XMLCALL _declaration(void* self, const XML_Char* version, const XML_Char* encoding,
                                     int) {
        _guard(self, [&](XmlEvents& to) {
            to.declaration(version, encoding != nullptr ? encoding : "");
        });
    }

    static void XMLCALL _documentType(void* self, const XML_Char*, const XML_Char*, const XML_Char*,
                                      int) {
        _guard(self, [](XmlEvents& to) { to.documentType(); });
    }

    std::size_t _memory;
    Handle _parser;
    XmlEvents& _events;
    std::exception_ptr _failure;
};

XmlPieces::XmlPieces(std::size_t memory, XmlEvents& events)
    : _reading(std::make_unique<Reading>(memory, events)) {}

XmlPieces::~XmlPieces() = default;

void XmlPieces::read(std::string_view piece, bool isLast) {
    // UTF-16 is the only other encoding that expat would detect by itself; it cannot do without NUL
    // bytes in markup, and no XML may hold U+0000.
    if (piece.find('\0') != std::string_view::npos) {
        throw XmlError(XmlError::Kind::notWellFormed, "the text holds a NUL byte");
    }
    _reading->read(piece, isLast);
}

std::string_view attributeOf(const char* const* attributes, std::string_view name) noexcept {
    for (; *attributes != nullptr; attributes += 2) {
        if (name == attributes[0]) return attributes[1];
    }
    return {};
}

void parseXml(std::string_view text, std::size_t memory, XmlEvents& events) {
    XmlPieces(memory, events).read(text, true);
}

}  // namespace cimhost
