#pragma once

#include "cimhost/cimxml/XmlError.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace cimhost {

/// What stands in an XML text, in its order. Views are good during the call. An exception ends the
/// reading and comes out of parseXml.
class XmlEvents {
public:
    virtual ~XmlEvents() = default;

    /// `attributes` holds names and values in turn and ends with a null pointer.
    virtual void startElement(std::string_view name, const char* const* attributes) = 0;
    virtual void endElement() = 0;
    /// A part of the text between tags; more of the same text may follow.
    virtual void characters(std::string_view text) = 0;
    /// `encoding` is empty when the text declares none.
    virtual void declaration(std::string_view version, std::string_view encoding) = 0;
    virtual void documentType() = 0;
};

/// The value of an attribute, as startElement is given them; empty when there is none.
std::string_view attributeOf(const char* const* attributes, std::string_view name) noexcept;

/// Reads a UTF-8 text that comes in pieces; a piece may end anywhere. Used by one thread at a time.
class XmlPieces {
public:
    /// `memory` as for parseXml. The events outlive this.
    XmlPieces(std::size_t memory, XmlEvents& events);
    ~XmlPieces();
    XmlPieces(const XmlPieces&) = delete;
    XmlPieces& operator=(const XmlPieces&) = delete;

    /// Throws as parseXml. Nothing more after a failure.
    void read(std::string_view piece, bool isLast);

private:
    class Reading;
    std::unique_ptr<Reading> _reading;
};

/// Reads a UTF-8 text. The parser itself may take `memory` bytes: enough for any token but absurd
/// ones, since it keeps each name that is new to it and whatever is not complete yet. Throws
/// XmlError: notWellFormed; notValid when the memory does not suffice. Safe from several threads.
void parseXml(std::string_view text, std::size_t memory, XmlEvents& events);

}  // namespace cimhost
