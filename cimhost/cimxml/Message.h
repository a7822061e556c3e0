#pragma once

#include "cimhost/cimxml/Handler.h"
#include "cimhost/cimxml/XmlDocument.h"

#include <optional>
#include <string_view>

namespace cimhost {

/// A request that is answered by an HTTP status rather than a CIM message (DSP0200, 7.3).
struct Refusal {
    int status = 400;
    std::string_view cimError;  ///< the CIMError header; empty for none. A literal.
};

/// The one call that a request message makes. Views into the document.
struct Message {
    std::string_view id;
    Element call;           ///< IMETHODCALL or METHODCALL
    std::string_view name;  ///< of the operation or method
    bool isIntrinsic;
    bool wantsTypedKeys;  ///< its DTD is 2.4 or later, or it types its own keys
};

/// True for a Content-Type of XML in UTF-8 or without a character set.
bool isReadableXml(std::string_view contentType) noexcept;

/// The CIMError header that answers a body which is no CIM-XML. A literal.
std::string_view requestError(const XmlError& error) noexcept;

/// Refuses what is no CIM request, before its body is looked at. Nothing when all is well.
std::optional<Refusal> checkHeaders(const CimXmlRequest& request);

/// Throws Refusal for what is not CIM 2.x and DTD 2.x in a protocol 1.x.
void checkVersions(const Element& cim, const Element& message);

/// The class that the call is about, as the message has it; empty where it names none.
std::string_view classAskedFor(const Message& message) noexcept;

/// The message in a document whose root is CIM. Throws Refusal for unsupported versions, for a
/// multiple request, and, unless it is forwarded, for headers that name another method or object
/// than the body.
Message readMessage(const CimXmlRequest& request, const XmlDocument& document);

}  // namespace cimhost
