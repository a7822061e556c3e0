#pragma once

#include "cimhost/cimxml/Grammar.h"
#include "cimhost/cimxml/XmlError.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// What a document may hold at most. All are exact: the limit itself is still accepted.
struct XmlLimits {
    static constexpr std::size_t depth = 256;         ///< elements one in the other
    static constexpr std::size_t attributes = 64;     ///< on one element
    static constexpr std::size_t nameLength = 1024;   ///< bytes of an element's or attribute's name
    static constexpr std::size_t elements = 1 << 18;  ///< in the whole document
    static constexpr std::size_t parserMemory = 4 << 20;  ///< bytes that the parser itself may take
};

class ElementRange;
class XmlDocument;

/// One element of a document: a light handle, good while the document is and stays where it is.
class Element {
public:
    Element(const XmlDocument& document, std::uint32_t index) noexcept
        : _document(&document), _index(index) {}

    Tag tag() const noexcept;
    /// The element's name as the document writes it, for messages.
    std::string_view tagName() const noexcept { return ruleOf(tag()).name; }

    /// The character data, empty where the grammar allows none.
    std::string_view text() const noexcept;
    std::optional<std::string_view> attribute(Attribute attribute) const noexcept;
    /// The attribute, or an empty text where it is missing.
    std::string_view attributeText(Attribute attribute) const noexcept;

    std::optional<Element> firstChild() const noexcept;
    std::optional<Element> next() const noexcept;
    /// The first child with this tag.
    std::optional<Element> child(Tag tag) const noexcept;
    ElementRange children() const noexcept;

private:
    const XmlDocument* _document;
    std::uint32_t _index;
};

/// The children of an element, for range-based loops.
class ElementRange {
public:
    class Iterator {
    public:
        explicit Iterator(std::optional<Element> element) noexcept : _element(element) {}
        Element operator*() const noexcept { return *_element; }
        Iterator& operator++() noexcept {
            _element = _element->next();
            return *this;
        }
        bool operator==(std::nullptr_t) const noexcept { return !_element; }

    private:
        std::optional<Element> _element;
    };

    explicit ElementRange(std::optional<Element> first) noexcept : _first(first) {}
    Iterator begin() const noexcept { return Iterator(_first); }
    std::nullptr_t end() const noexcept { return nullptr; }

private:
    std::optional<Element> _first;
};

/// A CIM-XML document that follows the grammar, as a tree. Constant; safe from several threads.
///
/// The text must be UTF-8. There is no DTD and hence no entity but the five of XML and numeric
/// references. Attributes that the grammar does not know are passed over, unknown elements are
/// refused.
class XmlDocument {
public:
    /// An empty one, for a builder to fill; until then it has no root.
    XmlDocument() = default;
    /// Reads a document whose outermost element is one of `roots`. Throws XmlError.
    XmlDocument(std::string_view text, TagSet roots);
    XmlDocument(const XmlDocument&) = delete;
    XmlDocument& operator=(const XmlDocument&) = delete;

    Element root() const noexcept { return Element(*this, 0); }

private:
    friend class Element;
    friend class XmlBuilder;

    static constexpr std::uint32_t none = UINT32_MAX;

    /// A part of _text.
    struct Slice {
        std::uint32_t begin = 0;
        std::uint32_t size = 0;
    };
    struct Node {
        Slice text;
        std::uint32_t firstChild = none;
        std::uint32_t next = none;
        std::uint32_t firstAttribute = 0;
        std::uint8_t attributeCount = 0;
        Tag tag;
    };
    struct AttributeNode {
        Slice value;
        Attribute attribute;
    };

    std::string_view _slice(Slice part) const noexcept {
        return std::string_view(_text).substr(part.begin, part.size);
    }

    std::vector<Node> _nodes;
    std::vector<AttributeNode> _attributes;
    std::string _text;
};

}  // namespace cimhost
