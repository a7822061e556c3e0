#include "tests/cimhost/cimxml/ReplyChecker.h"

#include <libxml/parser.h>
#include <libxml/valid.h>
#include <libxml/xmlerror.h>

#include <array>
#include <cstdarg>
#include <cstdio>
#include <memory>

namespace cimhost {
namespace {

/// The responses of CIM-XML without what this server never sends.
constexpr std::string_view responseRules = R"(
<!ELEMENT CIM (MESSAGE)>
<!ATTLIST CIM CIMVERSION CDATA #REQUIRED DTDVERSION CDATA #REQUIRED>
<!ELEMENT MESSAGE (SIMPLERSP)>
<!ATTLIST MESSAGE ID CDATA #REQUIRED PROTOCOLVERSION CDATA #REQUIRED>
<!ELEMENT SIMPLERSP (IMETHODRESPONSE | METHODRESPONSE)>
<!ELEMENT IMETHODRESPONSE (ERROR | IRETURNVALUE)?>
<!ATTLIST IMETHODRESPONSE NAME CDATA #REQUIRED>
<!ELEMENT METHODRESPONSE (ERROR | (RETURNVALUE?, PARAMVALUE*))>
<!ATTLIST METHODRESPONSE NAME CDATA #REQUIRED>
<!ELEMENT ERROR EMPTY>
<!ATTLIST ERROR CODE CDATA #REQUIRED DESCRIPTION CDATA #REQUIRED>
<!ELEMENT IRETURNVALUE (CLASSNAME* | INSTANCENAME* | VALUE.OBJECTWITHPATH* | OBJECTPATH* |
    QUALIFIER.DECLARATION* | VALUE? | VALUE.ARRAY? | VALUE.REFERENCE? | CLASS* | INSTANCE? |
    VALUE.NAMEDINSTANCE*)>
<!ELEMENT RETURNVALUE (VALUE | VALUE.REFERENCE)>
<!ATTLIST RETURNVALUE PARAMTYPE CDATA #REQUIRED EmbeddedObject (instance | object) #IMPLIED>
<!ELEMENT PARAMVALUE (VALUE | VALUE.REFERENCE | VALUE.ARRAY | VALUE.REFARRAY)>
<!ATTLIST PARAMVALUE NAME CDATA #REQUIRED PARAMTYPE CDATA #REQUIRED
    EmbeddedObject (instance | object) #IMPLIED>

<!ELEMENT VALUE (#PCDATA)>
<!ELEMENT VALUE.NULL EMPTY>
<!ELEMENT VALUE.ARRAY (VALUE | VALUE.NULL)*>
<!ELEMENT VALUE.REFERENCE (INSTANCEPATH | INSTANCENAME)>
<!ELEMENT VALUE.REFARRAY (VALUE.REFERENCE | VALUE.NULL)*>
<!ELEMENT VALUE.NAMEDINSTANCE (INSTANCENAME, INSTANCE)>
<!ELEMENT VALUE.OBJECTWITHPATH ((CLASSPATH, CLASS) | (INSTANCEPATH, INSTANCE))>
<!ELEMENT OBJECTPATH (INSTANCEPATH | CLASSPATH)>

<!ELEMENT NAMESPACEPATH (HOST, LOCALNAMESPACEPATH)>
<!ELEMENT LOCALNAMESPACEPATH (NAMESPACE+)>
<!ELEMENT NAMESPACE EMPTY>
<!ATTLIST NAMESPACE NAME CDATA #REQUIRED>
<!ELEMENT HOST (#PCDATA)>
<!ELEMENT CLASSPATH (NAMESPACEPATH, CLASSNAME)>
<!ELEMENT CLASSNAME EMPTY>
<!ATTLIST CLASSNAME NAME CDATA #REQUIRED>
<!ELEMENT INSTANCEPATH (NAMESPACEPATH, INSTANCENAME)>
<!ELEMENT INSTANCENAME (KEYBINDING*)>
<!ATTLIST INSTANCENAME CLASSNAME CDATA #REQUIRED>
<!ELEMENT KEYBINDING (KEYVALUE | VALUE.REFERENCE)>
<!ATTLIST KEYBINDING NAME CDATA #REQUIRED>
<!ELEMENT KEYVALUE (#PCDATA)>
<!ATTLIST KEYVALUE VALUETYPE (string | numeric | boolean) #REQUIRED TYPE (boolean | string |
    char16 | uint8 | sint8 | uint16 | sint16 | uint32 | sint32 | uint64 | sint64 | datetime | real32 |
    real64) #IMPLIED>

<!ELEMENT INSTANCE (PROPERTY | PROPERTY.ARRAY | PROPERTY.REFERENCE)*>
<!ATTLIST INSTANCE CLASSNAME CDATA #REQUIRED>
<!ELEMENT CLASS (QUALIFIER*, (PROPERTY | PROPERTY.ARRAY | PROPERTY.REFERENCE)*, METHOD*)>
<!ATTLIST CLASS NAME CDATA #REQUIRED SUPERCLASS CDATA #IMPLIED>
<!ELEMENT PROPERTY (QUALIFIER*, VALUE?)>
<!ATTLIST PROPERTY NAME CDATA #REQUIRED TYPE CDATA #REQUIRED CLASSORIGIN CDATA #IMPLIED
    PROPAGATED (true | false) #IMPLIED EmbeddedObject (instance | object) #IMPLIED>
<!ELEMENT PROPERTY.ARRAY (QUALIFIER*, VALUE.ARRAY?)>
<!ATTLIST PROPERTY.ARRAY NAME CDATA #REQUIRED TYPE CDATA #REQUIRED ARRAYSIZE CDATA #IMPLIED
    CLASSORIGIN CDATA #IMPLIED PROPAGATED (true | false) #IMPLIED
    EmbeddedObject (instance | object) #IMPLIED>
<!ELEMENT PROPERTY.REFERENCE (QUALIFIER*, VALUE.REFERENCE?)>
<!ATTLIST PROPERTY.REFERENCE NAME CDATA #REQUIRED REFERENCECLASS CDATA #IMPLIED
    CLASSORIGIN CDATA #IMPLIED PROPAGATED (true | false) #IMPLIED>
<!ELEMENT METHOD (QUALIFIER*, (PARAMETER | PARAMETER.REFERENCE | PARAMETER.ARRAY |
    PARAMETER.REFARRAY)*)>
<!ATTLIST METHOD NAME CDATA #REQUIRED TYPE CDATA #IMPLIED CLASSORIGIN CDATA #IMPLIED
    PROPAGATED (true | false) #IMPLIED>
<!ELEMENT PARAMETER (QUALIFIER*)>
<!ATTLIST PARAMETER NAME CDATA #REQUIRED TYPE CDATA #REQUIRED>
<!ELEMENT PARAMETER.REFERENCE (QUALIFIER*)>
<!ATTLIST PARAMETER.REFERENCE NAME CDATA #REQUIRED REFERENCECLASS CDATA #IMPLIED>
<!ELEMENT PARAMETER.ARRAY (QUALIFIER*)>
<!ATTLIST PARAMETER.ARRAY NAME CDATA #REQUIRED TYPE CDATA #REQUIRED ARRAYSIZE CDATA #IMPLIED>
<!ELEMENT PARAMETER.REFARRAY (QUALIFIER*)>
<!ATTLIST PARAMETER.REFARRAY NAME CDATA #REQUIRED REFERENCECLASS CDATA #IMPLIED
    ARRAYSIZE CDATA #IMPLIED>
<!ELEMENT QUALIFIER (VALUE | VALUE.ARRAY)?>
<!ATTLIST QUALIFIER NAME CDATA #REQUIRED TYPE CDATA #REQUIRED PROPAGATED (true | false) #IMPLIED
    OVERRIDABLE (true | false) #IMPLIED TOSUBCLASS (true | false) #IMPLIED
    TRANSLATABLE (true | false) #IMPLIED>
<!ELEMENT QUALIFIER.DECLARATION (SCOPE?, (VALUE | VALUE.ARRAY)?)>
<!ATTLIST QUALIFIER.DECLARATION NAME CDATA #REQUIRED TYPE CDATA #REQUIRED
    ISARRAY (true | false) #IMPLIED ARRAYSIZE CDATA #IMPLIED OVERRIDABLE (true | false) #IMPLIED
    TOSUBCLASS (true | false) #IMPLIED TRANSLATABLE (true | false) #IMPLIED>
<!ELEMENT SCOPE EMPTY>
<!ATTLIST SCOPE CLASS (true | false) #IMPLIED ASSOCIATION (true | false) #IMPLIED
    REFERENCE (true | false) #IMPLIED PROPERTY (true | false) #IMPLIED
    METHOD (true | false) #IMPLIED PARAMETER (true | false) #IMPLIED
    INDICATION (true | false) #IMPLIED>
)";

/// The elements that a client in use cannot read self-closed.
constexpr auto neverSelfClosed = std::to_array<std::string_view>(
    {"PROPERTY", "PROPERTY.ARRAY", "PROPERTY.REFERENCE", "PARAMETER", "PARAMETER.REFERENCE",
     "PARAMETER.ARRAY", "PARAMETER.REFARRAY", "QUALIFIER", "METHOD", "CLASS", "INSTANCE", "VALUE",
     "VALUE.ARRAY", "KEYVALUE", "IRETURNVALUE", "IMETHODRESPONSE", "METHODRESPONSE"});

struct DocumentDeleter {
    void operator()(xmlDoc* document) const noexcept { xmlFreeDoc(document); }
};
struct DtdDeleter {
    void operator()(xmlDtd* dtd) const noexcept { xmlFreeDtd(dtd); }
};
struct ContextDeleter {
    void operator()(xmlValidCtxt* context) const noexcept { xmlFreeValidCtxt(context); }
};
using Document = std::unique_ptr<xmlDoc, DocumentDeleter>;

Document parse(std::string_view text) {
    return Document(
        xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, "UTF-8",
                      XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_NONET | XML_PARSE_HUGE));
}

void collect(void* messages, const char* format, ...) {
    std::array<char, 512> line{};
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(line.data(), line.size(), format, arguments);
    va_end(arguments);
    static_cast<std::string*>(messages)->append(line.data());
}

std::string validate(const Document& document) {
    xmlParserInputBuffer* const input = xmlParserInputBufferCreateMem(
        responseRules.data(), static_cast<int>(responseRules.size()), XML_CHAR_ENCODING_UTF8);
    const std::unique_ptr<xmlDtd, DtdDeleter> dtd(
        xmlIOParseDTD(nullptr, input, XML_CHAR_ENCODING_UTF8));
    if (!dtd) return "the checker's own rules cannot be read";
    const std::unique_ptr<xmlValidCtxt, ContextDeleter> context(xmlNewValidCtxt());
    std::string messages;
    context->userData = &messages;
    context->error = collect;
    context->warning = collect;
    if (xmlValidateDtd(context.get(), document.get(), dtd.get()) != 1 && messages.empty()) {
        messages = "not valid";
    }
    return messages;
}

/// The name of the first element written self-closed that must not be.
std::string selfClosed(std::string_view text) {
    for (std::size_t end = text.find("/>"); end != std::string_view::npos;
         end = text.find("/>", end + 1)) {
        const std::size_t begin = text.rfind('<', end) + 1;
        const std::string_view tag = text.substr(begin, end - begin);
        const std::string_view name = tag.substr(0, tag.find(' '));
        for (const std::string_view never : neverSelfClosed) {
            if (name == never) return std::string(name);
        }
    }
    return {};
}

}  // namespace

bool isWellFormedXml(std::string_view text) { return parse(text) != nullptr; }

std::string problemOfReply(std::string_view reply) {
    constexpr std::string_view declaration = "<?xml version=\"1.0\" encoding=\"utf-8\"?>";
    if (!reply.starts_with(declaration)) return "no XML declaration at the start";
    const std::string_view rest = reply.substr(declaration.size());
    if (rest.find("<!") != std::string_view::npos) return "a comment, CDATA or DTD";
    if (rest.find("<?") != std::string_view::npos) return "a processing instruction";
    if (rest.find("&#") != std::string_view::npos) return "a numeric reference";
    if (const std::string name = selfClosed(rest); !name.empty()) return "self-closed " + name;
    const Document document = parse(reply);
    if (!document) return "not well-formed";
    return validate(document);
}

}  // namespace cimhost
