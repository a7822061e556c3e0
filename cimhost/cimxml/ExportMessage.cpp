#include "cimhost/cimxml/ExportMessage.h"

#include "cimhost/cimxml/ObjectWriter.h"
#include "cimhost/cimxml/XmlParser.h"

#include <algorithm>
#include <array>

namespace cimhost {
namespace {

constexpr std::size_t parserMemory = 1 << 20;
constexpr std::size_t maximumDepth = 256;
constexpr std::size_t maximumTextBytes = 400;

void setWhereDeclared(Instance& instance, const Class& definition, std::string_view name,
                      Value value) {
    if (definition.findProperty(name) != nullptr) instance.set(name, std::move(value));
}

bool isNull(const Instance& instance, std::string_view name) noexcept {
    const PropertyValue* const property = instance.find(name);
    return !property || property->value.isNull();
}

/// The element that stands at each depth of an answer, in which an error may take the place of
/// nothing.
constexpr auto steps = std::to_array<std::string_view>(
    {"CIM", "MESSAGE", "SIMPLEEXPRSP", "EXPMETHODRESPONSE", "ERROR"});

/// Follows the elements of an answer down to the response and an error in it.
class AnswerReader final : public XmlEvents {
public:
    void startElement(std::string_view name, const char* const* attributes) override {
        if (++_depth > maximumDepth) {
            throw XmlError(XmlError::Kind::notValid, "elements are nested too deeply");
        }
        const bool isNext = _depth == _matched + 1 && _matched < steps.size();
        if (!isNext || name != steps[_matched]) return;
        ++_matched;
        if (_matched == 4) _responds = attributeOf(attributes, "NAME") == "ExportIndication";
        if (_matched == 5) {
            _error =
                std::string(attributeOf(attributes, "CODE")) + " " +
                std::string(attributeOf(attributes, "DESCRIPTION").substr(0, maximumTextBytes));
        }
    }

    void endElement() override {
        if (_depth-- == _matched) --_matched;
    }

    void characters(std::string_view) override {}
    void declaration(std::string_view, std::string_view) override {}
    void documentType() override {
        throw XmlError(XmlError::Kind::notValid, "a DTD is not supported");
    }

    std::optional<std::string> failure() const {
        if (_error) return "the listener answered error " + *_error;
        if (!_responds) return "the answer is no response to ExportIndication";
        return std::nullopt;
    }

private:
    std::size_t _depth = 0;
    std::size_t _matched = 0;  ///< how many of the steps are open
    bool _responds = false;
    std::optional<std::string> _error;
};

}  // namespace

void writeExportMessage(XmlBuffer& out, const OutgoingIndication& outgoing,
                        const ExportSequence& sequence) {
    Instance indication = outgoing.indication;
    if (outgoing.definition != nullptr) {
        const Class& definition = *outgoing.definition;
        setWhereDeclared(indication, definition, "SequenceContext",
                         Value::string(std::string(sequence.context)));
        setWhereDeclared(indication, definition, "SequenceNumber",
                         Value::signedInteger(CimType::sint64, sequence.number));
        if (isNull(indication, "IndicationFilterName")) {
            setWhereDeclared(indication, definition, "IndicationFilterName",
                             Value::string(std::string(outgoing.filterName)));
        }
    }
    writeExport(out, sequence.number,
                {indication, outgoing.definition, outgoing.selection, outgoing.filterName},
                sequence.host, outgoing.nameSpace);
}

void writeExport(XmlBuffer& out, std::int64_t id, const OutgoingIndication& outgoing,
                 std::string_view host, std::string_view nameSpace) {
    out.markup(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE");
    out.attribute("ID", std::to_string(id));
    out.markup(
        " PROTOCOLVERSION=\"1.0\"><SIMPLEEXPREQ><EXPMETHODCALL NAME=\"ExportIndication\">"
        "<EXPPARAMVALUE NAME=\"NewIndication\">");
    ObjectWriter(out, host, nameSpace)
        .instance(outgoing.indication, outgoing.definition, outgoing.selection, false);
    out.markup("</EXPPARAMVALUE></EXPMETHODCALL></SIMPLEEXPREQ></MESSAGE></CIM>\n");
}

std::optional<std::string> exportFailure(std::string_view body) {
    AnswerReader reader;
    try {
        parseXml(body, parserMemory, reader);
    } catch (const XmlError& error) {
        return std::string("the answer is no CIM-XML: ") + error.what();
    }
    return reader.failure();
}

}  // namespace cimhost
