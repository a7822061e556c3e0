#include "cimhost/client/CimXmlClient.h"

#include "cimhost/cimxml/ClassReader.h"
#include "cimhost/cimxml/HeaderMatch.h"
#include "cimhost/cimxml/WrittenModel.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <charconv>
#include <optional>
#include <utility>

namespace cimhost {
namespace {

const std::string& nameSpaceOf(const RequestContext& context, const ObjectPath& path) noexcept {
    return path.nameSpace.empty() ? context.nameSpace : path.nameSpace;
}

ReplyReader::Taker instancesTo(InstanceSink& sink, const WrittenModel& model) {
    return [&](const Element& element) {
        sink.deliver(model.instance(element), nullptr, PropertySelection{});
    };
}

ReplyReader::Taker pathsTo(PathSink& sink, const WrittenModel& model) {
    return [&](const Element& element) { sink.deliver(model.path(element)); };
}

void takeNothing(const Element& element) {
    throw CimError(CimCode::failed, "the server's answer is no reply: it holds a result, " +
                                        std::string(element.tagName()));
}

[[noreturn]] void refuseStatus(const HttpAnswerHead& answer) {
    std::string text = "the server answered HTTP status " + std::to_string(answer.status);
    if (const auto reason = answer.field("CIMError")) text += ", " + std::string(*reason);
    const bool isDenied = answer.status == 401 || answer.status == 403;
    throw CimError(isDenied ? CimCode::accessDenied : CimCode::failed, text);
}

/// An operation that failed when some of its reply had left says so behind it.
void requireNoTrailer(const HttpAnswerHead& answer) {
    const std::string_view text = answer.field("CIMStatusCode").value_or("0");
    int code = 0;
    std::from_chars(text.data(), text.data() + text.size(), code);
    if (code == 0) return;
    const std::string description =
        percentDecode(answer.field("CIMStatusCodeDescription").value_or(std::string_view()));
    throw CimError(code >= 1 && code <= 29 ? static_cast<CimCode>(code) : CimCode::failed,
                   description);
}

}  // namespace

std::vector<HttpAnswerHead::Field> CimXmlClient::_headers(const RequestContext& context,
                                                          const RequestMessage& message) const {
    std::vector<HttpAnswerHead::Field> headers = message.headers();
    const auto add = [&headers](const char* name, const std::string& value) {
        if (!value.empty()) headers.push_back({name, value});
    };
    add("Accept-Language", context.acceptLanguage);
    add("Content-Language", context.contentLanguage);
    if (_moreHeaders) {
        for (auto& each : _moreHeaders(context)) headers.push_back(std::move(each));
    }
    return headers;
}

void CimXmlClient::_send(const RequestContext& context, RequestMessage& message,
                         const ReplyReader::Taker& take) {
    ReplyReader reader(message.operation(), take);
    const HttpAnswerHead answer =
        _transport.post(_headers(context, message), message.finish(),
                        [&reader](std::string_view piece) { reader.read(piece); });
    if (answer.status != 200) refuseStatus(answer);
    requireNoTrailer(answer);
    reader.finish();
}

RequestMessage CimXmlClient::_message(std::string_view operation, const RequestContext& context,
                                      const ObjectPath& path) const {
    return RequestMessage::intrinsic(operation, nameSpaceOf(context, path), _transport.host());
}

void CimXmlClient::getInstance(const RequestContext& context, const ObjectPath& path,
                               const InstanceOptions& options, InstanceSink& sink) {
    RequestMessage message = _message("GetInstance", context, path);
    message.addPath("InstanceName", path);
    message.add(options, false);
    const WrittenModel model(nameSpaceOf(context, path));
    std::optional<Instance> found;
    _send(context, message, [&](const Element& element) {
        if (found) takeNothing(element);
        found = model.instance(element);
    });
    if (!found) throw CimError(CimCode::failed, "the server's answer is no reply: no instance");
    found->path = path;
    found->path.nameSpace = nameSpaceOf(context, path);
    sink.deliver(*found, nullptr, PropertySelection{});
}

void CimXmlClient::enumerateInstances(const RequestContext& context, const ObjectPath& classPath,
                                      const InstanceOptions& options, InstanceSink& sink) {
    RequestMessage message = _message("EnumerateInstances", context, classPath);
    message.addClass("ClassName", classPath.className);
    message.add(options, true);
    const WrittenModel model(nameSpaceOf(context, classPath));
    _send(context, message, instancesTo(sink, model));
}

void CimXmlClient::enumerateInstanceNames(const RequestContext& context,
                                          const ObjectPath& classPath, PathSink& sink) {
    RequestMessage message = _message("EnumerateInstanceNames", context, classPath);
    message.addClass("ClassName", classPath.className);
    const WrittenModel model(nameSpaceOf(context, classPath));
    _send(context, message, pathsTo(sink, model));
}

ObjectPath CimXmlClient::createInstance(const RequestContext& context, const Instance& instance) {
    RequestMessage message = _message("CreateInstance", context, instance.path);
    message.addInstance("NewInstance", instance);
    const WrittenModel model(nameSpaceOf(context, instance.path));
    std::optional<ObjectPath> created;
    _send(context, message, [&](const Element& element) {
        if (created) takeNothing(element);
        created = model.path(element);
    });
    if (!created) throw CimError(CimCode::failed, "the server's answer is no reply: no path");
    return std::move(*created);
}

void CimXmlClient::modifyInstance(const RequestContext& context, const Instance& instance,
                                  const std::optional<std::vector<std::string>>& propertyList) {
    RequestMessage message = _message("ModifyInstance", context, instance.path);
    message.addNamedInstance("ModifiedInstance", instance);
    message.addPropertyList(propertyList);
    _send(context, message, takeNothing);
}

void CimXmlClient::deleteInstance(const RequestContext& context, const ObjectPath& path) {
    RequestMessage message = _message("DeleteInstance", context, path);
    message.addPath("InstanceName", path);
    _send(context, message, takeNothing);
}

void CimXmlClient::associators(const RequestContext& context, const ObjectPath& path,
                               const AssociationFilter& filter, const InstanceOptions& options,
                               InstanceSink& sink) {
    RequestMessage message = _message("Associators", context, path);
    message.addPath("ObjectName", path);
    message.add(filter, false);
    message.addWalk(options);
    const WrittenModel model(nameSpaceOf(context, path));
    _send(context, message, instancesTo(sink, model));
}

void CimXmlClient::associatorNames(const RequestContext& context, const ObjectPath& path,
                                   const AssociationFilter& filter, PathSink& sink) {
    RequestMessage message = _message("AssociatorNames", context, path);
    message.addPath("ObjectName", path);
    message.add(filter, false);
    const WrittenModel model(nameSpaceOf(context, path));
    _send(context, message, pathsTo(sink, model));
}

void CimXmlClient::references(const RequestContext& context, const ObjectPath& path,
                              const AssociationFilter& filter, const InstanceOptions& options,
                              InstanceSink& sink) {
    RequestMessage message = _message("References", context, path);
    message.addPath("ObjectName", path);
    message.add(filter, true);
    message.addWalk(options);
    const WrittenModel model(nameSpaceOf(context, path));
    _send(context, message, instancesTo(sink, model));
}

void CimXmlClient::referenceNames(const RequestContext& context, const ObjectPath& path,
                                  const AssociationFilter& filter, PathSink& sink) {
    RequestMessage message = _message("ReferenceNames", context, path);
    message.addPath("ObjectName", path);
    message.add(filter, true);
    const WrittenModel model(nameSpaceOf(context, path));
    _send(context, message, pathsTo(sink, model));
}

Value CimXmlClient::getProperty(const RequestContext& context, const ObjectPath& path,
                                std::string_view property) {
    RequestMessage message = _message("GetProperty", context, path);
    message.addPath("InstanceName", path);
    message.add("PropertyName", property);
    const WrittenModel model(nameSpaceOf(context, path));
    Value value = Value::null(CimType::string);
    _send(context, message, [&](const Element& element) { value = model.untyped(element); });
    return value;
}

void CimXmlClient::setProperty(const RequestContext& context, const ObjectPath& path,
                               std::string_view property, Value value) {
    RequestMessage message = _message("SetProperty", context, path);
    message.addPath("InstanceName", path);
    message.add("PropertyName", property);
    message.addValue("NewValue", value);
    _send(context, message, takeNothing);
}

void CimXmlClient::execQuery(const RequestContext& context, const std::string& language,
                             const std::string& query, InstanceSink& sink) {
    RequestMessage message = _message("ExecQuery", context, {});
    message.addValue("QueryLanguage", Value::string(language));
    message.addValue("Query", Value::string(query));
    const WrittenModel model(context.nameSpace);
    _send(context, message, instancesTo(sink, model));
}

MethodResult CimXmlClient::invokeMethod(const RequestContext& context, const ObjectPath& path,
                                        const std::string& method, const Arguments& in) {
    ObjectPath target = path;
    target.nameSpace = nameSpaceOf(context, path);
    RequestMessage message = RequestMessage::method(method, target, _transport.host());
    for (const Argument& argument : in) message.add(argument);
    const WrittenModel model(target.nameSpace);
    MethodResult result;
    _send(context, message, [&](const Element& element) {
        Argument found = model.argument(element);
        if (element.tag() == Tag::parameterValue) {
            result.out.push_back(std::move(found));
        } else {
            result.returnValue = std::move(found.value);
        }
    });
    return result;
}

std::vector<std::string> CimXmlClient::enumerateClassNames(const RequestContext& context,
                                                           std::string_view className, bool deep) {
    std::vector<std::string> names;
    ask(
        context, "EnumerateClassNames",
        [&](RequestMessage& message) {
            message.addClass("ClassName", className);
            message.add("DeepInheritance", deep);
        },
        [&](const Element& element) {
            names.emplace_back(element.attributeText(Attribute::name));
        });
    return names;
}

Class CimXmlClient::getClass(const RequestContext& context, std::string_view className) {
    const WrittenModel model(context.nameSpace);
    std::optional<Class> found;
    ask(
        context, "GetClass",
        [&](RequestMessage& message) {
            message.addClass("ClassName", className);
            message.add("LocalOnly", false);
            message.add("IncludeClassOrigin", true);
        },
        [&](const Element& element) {
            if (found || element.tag() != Tag::classDefinition) takeNothing(element);
            found = readClass(element, model.reader());
        });
    if (!found || !equalNames(found->name, className)) {
        throw CimError(CimCode::failed,
                       "the server's answer is no reply: no class " + std::string(className));
    }
    return std::move(*found);
}

void CimXmlClient::ask(const RequestContext& context, std::string_view operation,
                       const std::function<void(RequestMessage&)>& add,
                       const ReplyReader::Taker& take) {
    RequestMessage message = _message(operation, context, {});
    add(message);
    _send(context, message, take);
}

}  // namespace cimhost
