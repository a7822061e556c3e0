#include "cimhost/cimxml/XmlBuilder.h"

#include "cimhost/repository/Names.h"

#include <algorithm>
#include <utility>

namespace cimhost {
namespace {

[[noreturn]] void refuse(const char* message) { throw XmlError(XmlError::Kind::notValid, message); }

bool isBlank(std::string_view text) noexcept {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

std::string quoted(std::string_view name) { return "\"" + std::string(name.substr(0, 64)) + "\""; }

}  // namespace

void XmlBuilder::read(std::string_view text) {
    // Places in the text are kept in 32 bits.
    if (text.size() > UINT32_MAX / 2) refuse("the text is too long");
    // Values never get longer by decoding, so this is the only allocation for text.
    _document._text.reserve(text.size());
    parseXml(text, XmlLimits::parserMemory, *this);
    check();
}

void XmlBuilder::check() const {
    if (_problem) throw XmlError(XmlError::Kind::notValid, *_problem);
}

void XmlBuilder::startElement(std::string_view name, const char* const* attributes) {
    _checkLimits(name, attributes);
    ++_depth;
    if (_problem) return;
    if (const ElementRule* const rule = _allowed(name)) _append(*rule, attributes);
}

void XmlBuilder::_checkLimits(std::string_view name, const char* const* attributes) const {
    if (_depth == XmlLimits::depth) refuse("elements are nested too deeply");
    if (name.size() > XmlLimits::nameLength) refuse("the name of an element is too long");
    std::size_t count = 0;
    for (; attributes[2 * count] != nullptr; ++count) {
        if (std::string_view(attributes[2 * count]).size() > XmlLimits::nameLength) {
            refuse("the name of an attribute is too long");
        }
    }
    if (count > XmlLimits::attributes) refuse("an element has too many attributes");
    if (_document._nodes.size() == XmlLimits::elements) refuse("there are too many elements");
}

const ElementRule* XmlBuilder::_allowed(std::string_view name) {
    const ElementRule* const rule = findRule(name);
    if (!rule) {
        _refuse("unknown element " + quoted(name));
    } else if (_open.empty() ? !_roots.contains(rule->tag) : !_takes(_open.back(), rule->tag)) {
        _refuse("element " + quoted(name) + " is out of place");
    } else {
        return rule;
    }
    return nullptr;
}

bool XmlBuilder::_takes(Open& parent, Tag child) const noexcept {
    const auto& content = ruleOf(_document._nodes[parent.node].tag).content;
    for (; parent.step < content.size(); ++parent.step, parent.count = 0) {
        const ContentStep& step = content[parent.step];
        if (step.tags.contains(child) && parent.count < step.most) {
            ++parent.count;
            return true;
        }
        if (parent.count < step.least) return false;
    }
    return false;
}

bool XmlBuilder::_isComplete(const Open& open) const noexcept {
    const auto& content = ruleOf(_document._nodes[open.node].tag).content;
    std::uint32_t count = open.count;
    for (std::size_t step = open.step; step < content.size(); ++step, count = 0) {
        if (count < content[step].least) return false;
    }
    return true;
}

void XmlBuilder::_append(const ElementRule& rule, const char* const* attributes) {
    const auto index = static_cast<std::uint32_t>(_document._nodes.size());
    XmlDocument::Node node{.text = {}, .tag = rule.tag};
    _appendAttributes(node, attributes);
    _requireAttributes(rule, node);
    node.text.begin = static_cast<std::uint32_t>(_document._text.size());
    _document._nodes.push_back(node);
    if (!_open.empty()) {
        Open& parent = _open.back();
        if (parent.lastChild == XmlDocument::none) {
            _document._nodes[parent.node].firstChild = index;
        } else {
            _document._nodes[parent.lastChild].next = index;
        }
        parent.lastChild = index;
    }
    _open.push_back({index, XmlDocument::none, 0, 0});
}

void XmlBuilder::_appendAttributes(XmlDocument::Node& node, const char* const* attributes) {
    node.firstAttribute = static_cast<std::uint32_t>(_document._attributes.size());
    for (; *attributes != nullptr; attributes += 2) {
        const std::optional<Attribute> attribute = findAttribute(attributes[0]);
        if (!attribute) continue;
        _document._attributes.push_back({_store(attributes[1]), *attribute});
        ++node.attributeCount;
    }
}

void XmlBuilder::_requireAttributes(const ElementRule& rule, const XmlDocument::Node& node) {
    const auto first = _document._attributes.begin() + node.firstAttribute;
    for (const std::optional<Attribute>& required : rule.required) {
        if (!required) return;
        const auto found = std::find_if(first, _document._attributes.end(), [&](const auto& entry) {
            return entry.attribute == *required;
        });
        if (found == _document._attributes.end()) {
            _refuse("element " + quoted(rule.name) + " misses an attribute");
        }
    }
}

void XmlBuilder::endElement() {
    --_depth;
    if (_problem) return;
    if (!_isComplete(_open.back())) {
        _refuse("element " + quoted(ruleOf(_document._nodes[_open.back().node].tag).name) +
                " is incomplete");
    }
    _open.pop_back();
}

void XmlBuilder::characters(std::string_view text) {
    if (_problem) return;
    XmlDocument::Node& node = _document._nodes[_open.back().node];
    if (ruleOf(node.tag).hasText) {
        // Such an element has no children, so its text is in one piece.
        node.text.size += _store(text).size;
    } else if (!isBlank(text)) {
        _refuse("element " + quoted(ruleOf(node.tag).name) + " holds text");
    }
}

void XmlBuilder::declaration(std::string_view version, std::string_view encoding) {
    // Expat takes any version for granted.
    const std::string_view minor = version.substr(std::min<std::size_t>(version.size(), 2));
    if (!version.starts_with("1.") || minor.empty() ||
        minor.find_first_not_of("0123456789") != std::string_view::npos) {
        throw XmlError(XmlError::Kind::notWellFormed, "the XML version is not 1.x");
    }
    if (!encoding.empty() && !equalNames(encoding, "UTF-8") && !equalNames(encoding, "US-ASCII")) {
        _refuse("the encoding " + quoted(encoding) + " is not UTF-8");
    }
}

XmlDocument::Slice XmlBuilder::_store(std::string_view text) {
    const auto begin = static_cast<std::uint32_t>(_document._text.size());
    _document._text.append(text);
    return {begin, static_cast<std::uint32_t>(text.size())};
}

void XmlBuilder::_refuse(std::string message) {
    if (!_problem) _problem = std::move(message);
}

void XmlBuilder::documentType() { refuse("the document has a DTD"); }

}  // namespace cimhost
