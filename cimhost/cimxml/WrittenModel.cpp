#include "cimhost/cimxml/WrittenModel.h"

#include "cimhost/repository/CimError.h"

#include <optional>

namespace cimhost {
namespace {

[[noreturn]] void refuse(const Element& element) {
    throwInvalidParameter("a " + std::string(element.tagName()) + " is out of place");
}

CimType writtenType(const Element& parameter) {
    const std::string_view name = parameter.attribute(Attribute::parameterType)
                                      .value_or(parameter.attributeText(Attribute::type));
    const CimType type = typeFromName(name);
    const bool isEmbedded = parameter.attribute(Attribute::embeddedObject).has_value();
    return type == CimType::string && isEmbedded ? CimType::instance : type;
}

}  // namespace

ObjectPath WrittenModel::path(const Element& element) const {
    const Tag tag = element.tag();
    if (tag == Tag::objectPath) return _reader.reference(element);
    if (tag != Tag::instanceName && tag != Tag::className) refuse(element);
    return _reader.path(element);
}

Instance WrittenModel::instance(const Element& element) const {
    if (element.tag() == Tag::instance) return _reader.undeclaredInstance(element);
    const std::optional<Element> content = element.child(Tag::instance);
    if (!content) refuse(element);
    Instance instance = _reader.undeclaredInstance(*content);
    if (element.tag() == Tag::valueNamedInstance) {
        instance.path = _reader.path(*element.firstChild());
    } else {
        // Its first child is what a reference has.
        instance.path = _reader.reference(element);
    }
    return instance;
}

Argument WrittenModel::argument(const Element& element) const {
    Argument argument{std::string(element.attributeText(Attribute::name)),
                      Value::null(writtenType(element))};
    const std::optional<Element> content = element.firstChild();
    if (content) argument.value = _value(*content, argument.value.type());
    return argument;
}

Value WrittenModel::untyped(const Element& element) const {
    return _value(element,
                  element.tag() == Tag::valueReference ? CimType::reference : CimType::string);
}

Value WrittenModel::_value(const Element& element, CimType type) const {
    const bool isReference =
        element.tag() == Tag::valueReference || element.tag() == Tag::valueReferenceArray;
    const bool isArray =
        element.tag() == Tag::valueArray || element.tag() == Tag::valueReferenceArray;
    if (isReference) type = CimType::reference;
    if (type == CimType::none) type = CimType::string;
    return _reader.value(element, {type, isArray, "parameter", "", "the message"});
}

}  // namespace cimhost
