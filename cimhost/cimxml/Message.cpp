#include "cimhost/cimxml/Message.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/cimxml/ModelReader.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>

namespace cimhost {
namespace {

constexpr std::string_view digits = "0123456789";

/// True for `<major>.<digits>` and `<major>.<digits>.<digits>`.
bool isVersion(std::string_view text, std::string_view major) noexcept {
    if (!text.starts_with(major)) return false;
    text.remove_prefix(major.size());
    for (int parts = 0; parts < 2 && text.starts_with('.'); ++parts) {
        const std::size_t end = std::min(text.find_first_not_of(digits, 1), text.size());
        if (end == 1) return false;
        text.remove_prefix(end);
        if (text.empty()) return true;
    }
    return false;
}

/// The second part of a version that `isVersion` takes, as far as it matters.
unsigned minorOf(std::string_view version) noexcept {
    unsigned minor = 0;
    version.remove_prefix(version.find('.') + 1);
    for (const char digit : version.substr(0, version.find_first_not_of(digits))) {
        minor = std::min(minor * 10 + static_cast<unsigned>(digit - '0'), 99U);
    }
    return minor;
}

bool hasTypedKey(const Element& element) noexcept {
    if (element.tag() == Tag::keyValue) return element.attribute(Attribute::type).has_value();
    for (const Element child : element.children()) {
        if (hasTypedKey(child)) return true;
    }
    return false;
}

/// The attribute TYPE of KEYVALUE is required since DSP0203 2.4; before, clients may not know it.
bool wantsTypedKeys(const Element& cim, const Element& call) noexcept {
    return minorOf(cim.attributeText(Attribute::dtdVersion)) >= 4 || hasTypedKey(call);
}

constexpr std::string_view blanks = " \t";

/// Takes what stands before the next ';' off the front.
std::string_view takePart(std::string_view& text) noexcept {
    const std::size_t end = std::min(text.find(';'), text.size());
    const std::string_view part = trimmed(text.substr(0, end), blanks);
    text.remove_prefix(std::min(end + 1, text.size()));
    return part;
}

/// False for a parameter that says that the text is in another character set than UTF-8.
bool isReadable(std::string_view parameter) noexcept {
    const std::size_t equals = std::min(parameter.find('='), parameter.size());
    if (!equalNames(trimmed(parameter.substr(0, equals), blanks), "charset")) return true;
    std::string_view charset =
        trimmed(parameter.substr(std::min(equals + 1, parameter.size())), blanks);
    if (charset.size() > 1 && charset.starts_with('"') && charset.ends_with('"')) {
        charset = charset.substr(1, charset.size() - 2);
    }
    return equalNames(charset, "utf-8") || equalNames(charset, "us-ascii");
}

/// True when the header, as it stands or percent-decoded, is what `matches` looks for. Not every
/// client encodes a '%' that belongs to a key.
bool headerMatches(const CimXmlRequest& request, std::string_view name, auto&& matches) {
    const std::optional<std::string_view> header = request.header(name);
    return header && (matches(std::string_view(percentDecode(*header))) || matches(*header));
}

bool namesMethod(const CimXmlRequest& request, std::string_view method) {
    return headerMatches(request, "CIMMethod",
                         [&](std::string_view text) { return equalNames(text, method); });
}

bool namesObject(const CimXmlRequest& request, const Message& message) {
    const Element target = *message.call.firstChild();
    return headerMatches(request, "CIMObject", [&](std::string_view text) {
        return message.isIntrinsic ? sameNameSpace(text, joinNameSpace(target))
                                   : namesTarget(text, target);
    });
}

Element callOf(const Element& simpleRequest) {
    Element call = *simpleRequest.firstChild();
    while (call.tag() == Tag::correlator) call = *call.next();
    return call;
}

/// The parameters that say what an intrinsic operation is about: one has one of them at most.
constexpr auto subjects = std::to_array<std::string_view>(
    {"ClassName", "InstanceName", "ObjectName", "NewInstance", "ModifiedInstance"});

std::string_view classNamedBy(const Element& value) noexcept {
    if (value.tag() == Tag::className) return value.attributeText(Attribute::name);
    if (value.tag() != Tag::valueNamedInstance) return value.attributeText(Attribute::className);
    return value.firstChild()->attributeText(Attribute::className);
}

}  // namespace

bool isReadableXml(std::string_view contentType) noexcept {
    const std::string_view mediaType = takePart(contentType);
    if (!equalNames(mediaType, "application/xml") && !equalNames(mediaType, "text/xml")) {
        return false;
    }
    while (!contentType.empty()) {
        if (!isReadable(takePart(contentType))) return false;
    }
    return true;
}

std::string_view requestError(const XmlError& error) noexcept {
    switch (error.kind()) {
        case XmlError::Kind::notWellFormed: return "request-not-well-formed";
        case XmlError::Kind::notValid: break;
    }
    return "request-not-valid";
}

std::optional<Refusal> checkHeaders(const CimXmlRequest& request) {
    const std::optional<std::string_view> operation = request.header("CIMOperation");
    if (!operation) return Refusal{400, {}};
    if (!equalNames(*operation, "MethodCall")) return Refusal{400, "unsupported-operation"};
    // A client that does not say what it sends is believed to mean XML.
    const std::optional<std::string_view> contentType = request.header("Content-Type");
    if (contentType && !isReadableXml(*contentType)) return Refusal{415, {}};
    const std::optional<std::string_view> version = request.header("CIMProtocolVersion");
    if (version && !isVersion(*version, "1")) return Refusal{501, "unsupported-protocol-version"};
    return std::nullopt;
}

void checkVersions(const Element& cim, const Element& message) {
    if (!isVersion(cim.attributeText(Attribute::cimVersion), "2")) {
        throw Refusal{501, "unsupported-cim-version"};
    }
    if (!isVersion(cim.attributeText(Attribute::dtdVersion), "2")) {
        throw Refusal{501, "unsupported-dtd-version"};
    }
    if (!isVersion(message.attributeText(Attribute::protocolVersion), "1")) {
        throw Refusal{501, "unsupported-protocol-version"};
    }
}

std::string_view classAskedFor(const Message& message) noexcept {
    if (!message.isIntrinsic) return classNamedBy(*message.call.firstChild()->firstChild()->next());
    for (const Element parameter : message.call.children()) {
        const std::string_view name = parameter.attributeText(Attribute::name);
        const auto value = containsName(subjects, name) ? parameter.firstChild() : std::nullopt;
        if (value) return classNamedBy(*value);
    }
    return {};
}

Message readMessage(const CimXmlRequest& request, const XmlDocument& document) {
    const Element cim = document.root();
    const Element envelope = *cim.firstChild();
    checkVersions(cim, envelope);
    const Element content = *envelope.firstChild();
    if (content.tag() == Tag::multipleRequest) throw Refusal{501, "multiple-requests-unsupported"};
    if (content.tag() != Tag::simpleRequest) throw Refusal{400, "request-not-valid"};
    const Element call = callOf(content);
    const Message message{envelope.attributeText(Attribute::id), call,
                          call.attributeText(Attribute::name), call.tag() == Tag::intrinsicCall,
                          wantsTypedKeys(cim, call)};
    if (request.isForwarded) return message;
    if (!namesMethod(request, message.name) || !namesObject(request, message)) {
        throw Refusal{400, "header-mismatch"};
    }
    return message;
}

}  // namespace cimhost
