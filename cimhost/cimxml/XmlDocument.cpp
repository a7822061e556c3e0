#include "cimhost/cimxml/XmlDocument.h"

#include "cimhost/cimxml/XmlBuilder.h"

namespace cimhost {

Tag Element::tag() const noexcept { return _document->_nodes[_index].tag; }

std::string_view Element::text() const noexcept {
    return _document->_slice(_document->_nodes[_index].text);
}

std::optional<std::string_view> Element::attribute(Attribute attribute) const noexcept {
    const XmlDocument::Node& node = _document->_nodes[_index];
    for (std::uint32_t i = 0; i < node.attributeCount; ++i) {
        const XmlDocument::AttributeNode& entry = _document->_attributes[node.firstAttribute + i];
        if (entry.attribute == attribute) return _document->_slice(entry.value);
    }
    return std::nullopt;
}

std::string_view Element::attributeText(Attribute name) const noexcept {
    return attribute(name).value_or(std::string_view{});
}

std::optional<Element> Element::firstChild() const noexcept {
    const std::uint32_t first = _document->_nodes[_index].firstChild;
    if (first == XmlDocument::none) return std::nullopt;
    return Element(*_document, first);
}

std::optional<Element> Element::next() const noexcept {
    const std::uint32_t following = _document->_nodes[_index].next;
    if (following == XmlDocument::none) return std::nullopt;
    return Element(*_document, following);
}

std::optional<Element> Element::child(Tag tag) const noexcept {
    for (const Element element : children()) {
        if (element.tag() == tag) return element;
    }
    return std::nullopt;
}

ElementRange Element::children() const noexcept { return ElementRange(firstChild()); }

XmlDocument::XmlDocument(std::string_view text, TagSet roots) {
    XmlBuilder(*this, roots).read(text);
}

}  // namespace cimhost
