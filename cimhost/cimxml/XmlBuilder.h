#pragma once

#include "cimhost/cimxml/XmlDocument.h"
#include "cimhost/cimxml/XmlParser.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cimhost {

/// Fills a document from the events of a parser and holds it against grammar and limits on the way,
/// so that nothing is kept of what the grammar does not allow. Used once, by one thread.
class XmlBuilder final : public XmlEvents {
public:
    XmlBuilder(XmlDocument& document, TagSet roots) : _document(document), _roots(roots) {}

    /// Throws XmlError. A text that is not well-formed is told apart from one that is only invalid
    /// by reading on to its end; a limit or a DTD ends the reading at once.
    void read(std::string_view text);

    /// Throws XmlError when what was reported so far is not valid: where the events are not those
    /// of read() but those of an element among others, at its end.
    void check() const;

    void startElement(std::string_view name, const char* const* attributes) override;
    void endElement() override;
    void characters(std::string_view text) override;
    void declaration(std::string_view version, std::string_view encoding) override;
    void documentType() override;

private:
    /// An element that is not closed yet.
    struct Open {
        std::uint32_t node;
        std::uint32_t lastChild;
        std::uint32_t count;  ///< children of the content step that we are in
        std::uint8_t step;
    };

    /// Null where the grammar does not allow the element here.
    const ElementRule* _allowed(std::string_view name);
    bool _takes(Open& parent, Tag child) const noexcept;
    bool _isComplete(const Open& open) const noexcept;
    void _checkLimits(std::string_view name, const char* const* attributes) const;
    void _append(const ElementRule& rule, const char* const* attributes);
    void _appendAttributes(XmlDocument::Node& node, const char* const* attributes);
    void _requireAttributes(const ElementRule& rule, const XmlDocument::Node& node);
    XmlDocument::Slice _store(std::string_view text);
    void _refuse(std::string message);

    XmlDocument& _document;
    TagSet _roots;
    std::vector<Open> _open;
    std::size_t _depth = 0;
    std::optional<std::string> _problem;  ///< the first thing that makes the document invalid
};

}  // namespace cimhost
