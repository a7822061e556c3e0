#include "cimhost/objects/ErrorHandle.h"

#include "cimhost/objects/ArrayHandle.h"
#include "cimhost/objects/Entry.h"
#include "cimhost/objects/StringHandle.h"

namespace cimhost {

namespace {

using ErrorText = ErrorObject::Text;
using List = ErrorObject::List;

constexpr std::size_t place(ErrorText text) noexcept { return static_cast<std::size_t>(text); }
constexpr std::size_t place(List list) noexcept { return static_cast<std::size_t>(list); }

// Numbers run from zero to the last one without a gap but where `gap` says.
template <typename Number>
Number inRange(Number number, int last, int gap = -1) {
    const int value = static_cast<int>(number);
    if (value < 0 || value > last || value == gap) throw Failure{CMPI_RC_ERR_INVALID_PARAMETER};
    return number;
}

template <auto member>
auto getNumber(const CMPIError* error, CMPIStatus* status) noexcept {
    return enter<ErrorObject>(error, status, [](ErrorObject& object) { return object.*member; });
}

template <ErrorText text>
CMPIString* getText(const CMPIError* error, CMPIStatus* status) noexcept {
    return enter<ErrorObject>(error, status, [](ErrorObject& object) -> CMPIString* {
        const auto& content = object.texts[place(text)];
        return content ? &makeText(partOf(object), *content) : nullptr;
    });
}

template <ErrorText text>
CMPIStatus setText(const CMPIError* error, const char* content) noexcept {
    return enter<ErrorObject>(error, [&](ErrorObject& object) {
        auto& kept = object.texts[place(text)];
        if (content) {
            kept = content;
        } else {
            kept.reset();
        }
    });
}

template <List list>
CMPIArray* getList(const CMPIError* error, CMPIStatus* status) noexcept {
    return enter<ErrorObject>(error, status, [](ErrorObject& object) -> CMPIArray* {
        const auto& content = object.lists[place(list)];
        return content ? &make<ArrayObject>(partOf(object), CimType::string, *content) : nullptr;
    });
}

template <List list>
CMPIStatus setList(const CMPIError* error, const CMPIArray* texts) noexcept {
    return enter<ErrorObject>(error, [&](ErrorObject& object) {
        auto& kept = object.lists[place(list)];
        if (!texts) return kept.reset();
        const ArrayObject& array = requiredObject<ArrayObject>(texts);
        if (array.elementType != CimType::string) throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
        kept = array.elements;
    });
}

CMPIStatus setErrorType(const CMPIError* error, CMPIErrorType type) noexcept {
    return enter<ErrorObject>(error, [&](ErrorObject& object) {
        object.errorType = inRange(type, UnsupportedOperationError);
    });
}

CMPIStatus setErrorSourceFormat(const CMPIError* error, CMPIErrorSrcFormat format) noexcept {
    return enter<ErrorObject>(error, [&](ErrorObject& object) {
        object.sourceFormat = inRange(format, CIMObjectHandle);
    });
}

Value number(CimType type, int value) {
    return Value::unsignedInteger(type, static_cast<std::uint64_t>(value));
}

struct TextProperty {
    ErrorText text;
    std::string_view name;
};

constexpr auto textProperties = std::to_array<TextProperty>({
    {ErrorText::otherErrorType, "OtherErrorType"},
    {ErrorText::owningEntity, "OwningEntity"},
    {ErrorText::messageId, "MessageID"},
    {ErrorText::message, "Message"},
    {ErrorText::probableCauseDescription, "ProbableCauseDescription"},
    {ErrorText::errorSource, "ErrorSource"},
    {ErrorText::otherErrorSourceFormat, "OtherErrorSourceFormat"},
    {ErrorText::cimStatusCodeDescription, "CIMStatusCodeDescription"},
});
static_assert(textProperties.size() == place(ErrorText::count));

}  // namespace

const CMPIErrorFT ErrorObject::table = {
    CMPICurrentVersion,
    releaseObject<ErrorObject>,
    cloneObject<ErrorObject>,
    getNumber<&ErrorObject::errorType>,
    getText<ErrorText::otherErrorType>,
    getText<ErrorText::owningEntity>,
    getText<ErrorText::messageId>,
    getText<ErrorText::message>,
    getNumber<&ErrorObject::severity>,
    getNumber<&ErrorObject::probableCause>,
    getText<ErrorText::probableCauseDescription>,
    getList<List::recommendedActions>,
    getText<ErrorText::errorSource>,
    getNumber<&ErrorObject::sourceFormat>,
    getText<ErrorText::otherErrorSourceFormat>,
    getNumber<&ErrorObject::cimStatus>,
    getText<ErrorText::cimStatusCodeDescription>,
    getList<List::messageArguments>,
    setErrorType,
    setText<ErrorText::otherErrorType>,
    setText<ErrorText::probableCauseDescription>,
    setList<List::recommendedActions>,
    setText<ErrorText::errorSource>,
    setErrorSourceFormat,
    setText<ErrorText::otherErrorSourceFormat>,
    setText<ErrorText::cimStatusCodeDescription>,
    setList<List::messageArguments>,
};

Instance ErrorObject::asInstance() const {
    Instance instance;
    instance.path.className = "CIM_Error";
    instance.set("ErrorType", number(CimType::uint16, errorType));
    for (const TextProperty& property : textProperties) {
        const auto& text = texts[place(property.text)];
        if (text) instance.set(property.name, Value::string(*text));
    }
    const auto& actions = lists[place(List::recommendedActions)];
    if (actions) instance.set("RecommendedActions", Value::array(CimType::string, *actions));
    const auto& arguments = lists[place(List::messageArguments)];
    if (arguments) instance.set("MessageArguments", Value::array(CimType::string, *arguments));
    instance.set("PerceivedSeverity", number(CimType::uint16, severity));
    instance.set("ProbableCause", number(CimType::uint16, probableCause));
    instance.set("ErrorSourceFormat", number(CimType::uint16, sourceFormat));
    instance.set("CIMStatusCode", number(CimType::uint32, cimStatus));
    return instance;
}

ErrorObject& makeError(const Home& home, const CoreError& core) {
    const std::string_view owningEntity = required(core.owningEntity);
    const std::string_view messageId = required(core.messageId);
    const std::string_view message = required(core.message);
    const auto severity = inRange(core.severity, ErrorSevFatal, 1);
    const auto probableCause = inRange(core.probableCause, Unexpected_Information);
    ErrorObject& error = make<ErrorObject>(home);
    error.texts[place(ErrorText::owningEntity)] = owningEntity;
    error.texts[place(ErrorText::messageId)] = messageId;
    error.texts[place(ErrorText::message)] = message;
    error.severity = severity;
    error.probableCause = probableCause;
    error.cimStatus = core.cimStatus;
    return error;
}

}  // namespace cimhost
