#include "cimhost/client/RequestMessage.h"

#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/cimxml/ValueText.h"

#include <memory>
#include <utility>

namespace cimhost {
namespace {

std::string quoted(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        if (character == '"' || character == '\\') result += '\\';
        result += character;
    }
    return result + '"';
}

/// A key as the text of a path has it.
std::string keyText(const Value& value) {
    if (const auto* const path = value.get<std::shared_ptr<const ObjectPath>>()) {
        return quoted(pathText(**path));
    }
    ScalarScratch scratch;
    const CimType type = value.type();
    const bool isBare = isInteger(type) || isReal(type) || type == CimType::boolean;
    const std::string_view text = scalarText(value, scratch);
    return isBare && type != CimType::char16 ? std::string(text) : quoted(text);
}

}  // namespace

std::string pathText(const ObjectPath& path) {
    std::string text = path.nameSpace.empty() ? std::string() : path.nameSpace + ':';
    text += path.className;
    char separator = '.';
    for (const KeyBinding& key : path.keys) {
        text += separator;
        text.append(key.name.str()).append("=").append(keyText(key.value));
        separator = ',';
    }
    return text;
}

RequestMessage::RequestMessage(std::string_view operation, bool isIntrinsic, std::string nameSpace,
                               std::string_view host)
    : _operation(operation),
      _isIntrinsic(isIntrinsic),
      _nameSpace(std::move(nameSpace)),
      _host(host),
      _object(_nameSpace) {
    _out.markup(
        "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n"
        "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.4\"><MESSAGE ID=\"1\" PROTOCOLVERSION=\"1.0\">"
        "<SIMPLEREQ>");
    _out.markup(_isIntrinsic ? "<IMETHODCALL" : "<METHODCALL");
    _out.attribute("NAME", operation);
    _out.markup(">");
}

RequestMessage RequestMessage::intrinsic(std::string_view operation, std::string nameSpace,
                                         std::string_view host) {
    RequestMessage message(operation, true, std::move(nameSpace), host);
    message._writer().localNameSpacePath(message._nameSpace);
    return message;
}

RequestMessage RequestMessage::method(std::string_view name, const ObjectPath& target,
                                      std::string_view host) {
    RequestMessage message(name, false, target.nameSpace, host);
    message._object = pathText(target);
    const bool isClass = target.keys.empty();
    message._out.markup(isClass ? "<LOCALCLASSPATH>" : "<LOCALINSTANCEPATH>");
    message._writer().localNameSpacePath(message._nameSpace);
    if (isClass) {
        message._writer().className(target.className);
    } else {
        message._writer().instanceName(target);
    }
    message._out.markup(isClass ? "</LOCALCLASSPATH>" : "</LOCALINSTANCEPATH>");
    return message;
}

void RequestMessage::_parameter(std::string_view name, auto&& writeContent) {
    _out.markup("<IPARAMVALUE");
    _out.attribute("NAME", name);
    _out.markup(">");
    writeContent();
    _out.markup("</IPARAMVALUE>");
}

void RequestMessage::add(std::string_view parameter, std::string_view text) {
    if (!text.empty()) addValue(parameter, Value::string(Text(text)));
}

void RequestMessage::add(std::string_view parameter, bool flag) {
    addValue(parameter, Value::boolean(flag));
}

void RequestMessage::addClass(std::string_view parameter, std::string_view className) {
    if (!className.empty()) _parameter(parameter, [&] { _writer().className(className); });
}

void RequestMessage::addPath(std::string_view parameter, const ObjectPath& path) {
    _parameter(parameter, [&] { _writer().instanceName(path); });
}

void RequestMessage::addInstance(std::string_view parameter, const Instance& instance) {
    _parameter(parameter, [&] { _writer().instance(instance, nullptr, {}, true); });
}

void RequestMessage::addNamedInstance(std::string_view parameter, const Instance& instance) {
    _parameter(parameter, [&] {
        _out.markup("<VALUE.NAMEDINSTANCE>");
        _writer().instanceName(instance.path);
        _writer().instance(instance, nullptr, {}, true);
        _out.markup("</VALUE.NAMEDINSTANCE>");
    });
}

void RequestMessage::addValue(std::string_view parameter, const Value& value) {
    _parameter(parameter, [&] { _writer().value(value); });
}

void RequestMessage::add(const InstanceOptions& options, bool isAboutClass) {
    add("LocalOnly", options.localOnly);
    if (isAboutClass) add("DeepInheritance", options.deepInheritance);
    addWalk(options);
}

void RequestMessage::addWalk(const InstanceOptions& options) {
    add("IncludeQualifiers", options.includeQualifiers);
    add("IncludeClassOrigin", options.includeClassOrigin);
    addPropertyList(options.propertyList);
}

void RequestMessage::addPropertyList(const std::optional<std::vector<std::string>>& names) {
    if (!names) return;
    Value::Array list;
    for (const std::string& name : *names) list.push_back(Value::string(Text(name)));
    addValue("PropertyList", Value::array(CimType::string, std::move(list)));
}

void RequestMessage::add(const AssociationFilter& filter, bool isAboutReferences) {
    addClass("AssocClass", filter.associationClass);
    addClass("ResultClass", filter.resultClass);
    add("Role", filter.role);
    if (!isAboutReferences) add("ResultRole", filter.resultRole);
}

void RequestMessage::add(const Argument& argument) {
    _out.markup("<PARAMVALUE");
    _out.attribute("NAME", argument.name);
    if (argument.value.type() != CimType::none) {
        _writer().typeAttribute("PARAMTYPE", argument.value);
    }
    _out.markup(">");
    _writer().value(argument.value);
    _out.markup("</PARAMVALUE>");
}

std::string_view RequestMessage::finish() {
    _out.markup(_isIntrinsic ? "</IMETHODCALL>" : "</METHODCALL>");
    _out.markup("</SIMPLEREQ></MESSAGE></CIM>\n");
    return _out.view();
}

std::vector<HttpAnswerHead::Field> RequestMessage::headers() const {
    return {{"CIMOperation", "MethodCall"},
            {"CIMMethod", escapeForHeader(_operation)},
            {"CIMObject", escapeForHeader(_object)}};
}

}  // namespace cimhost
