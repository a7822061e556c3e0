#include "cimhost/objects/ContextHandle.h"

#include "cimhost/objects/Entry.h"
#include "cimhost/objects/StringHandle.h"
#include "cimhost/objects/Values.h"
#include "cimhost/repository/CimError.h"
#include "cimhost/repository/Names.h"

#include <algorithm>
#include <array>

namespace cimhost {

namespace {

struct TextRow {
    std::string_view name;
    std::string& (*text)(ContextObject&) noexcept;
    bool mayBeEmpty;
};

constexpr auto textRows = std::to_array<TextRow>({
    {CMPIInitNameSpace,
     [](ContextObject& object) noexcept -> std::string& { return object.request.nameSpace; },
     false},
    {CMPIPrincipal,
     [](ContextObject& object) noexcept -> std::string& { return object.request.principal; },
     false},
    {CMPIRole, [](ContextObject& object) noexcept -> std::string& { return object.role; }, true},
    {CMPIAcceptLanguage,
     [](ContextObject& object) noexcept -> std::string& { return object.request.acceptLanguage; },
     true},
    {CMPIContentLanguage,
     [](ContextObject& object) noexcept -> std::string& { return object.request.contentLanguage; },
     true},
});

bool contextHas(const ContextObject& object, Habit habit) noexcept {
    return object.broker->manner().has(habit);
}

CMPIData textData(ContextObject& object, const std::string& text) {
    CMPIData data{CMPI_string, CMPI_goodValue, {}};
    StringObject& string = makeText(partOf(object), text);
    if (text.empty() && contextHas(object, Habit::answersAbsentTextsAsNull)) string.text = nullptr;
    data.value.string = &string;
    return data;
}

CMPIData flagsData(const ContextObject& object) noexcept {
    CMPIData data{CMPI_uint32, CMPI_goodValue, {}};
    data.value.uint32 = object.request.flags;
    return data;
}

CMPIData addedData(ContextObject& object, const ContextObject::Entry& entry) {
    if (!entry.bytes) return toCmpi(partOf(object), entry.value);
    CMPIData data{CMPI_ptr, CMPI_goodValue, {}};
    data.value.dataPtr = *entry.bytes;
    return data;
}

bool isPresent(const TextRow& row, ContextObject& object) noexcept {
    const bool isPrincipal = row.name == CMPIPrincipal;
    if (!isPrincipal && contextHas(object, Habit::hasNoNameSpaceInContexts)) return false;
    if (isPrincipal && contextHas(object, Habit::answersAbsentTextsAsNull)) return true;
    return row.mayBeEmpty || !row.text(object).empty();
}

// Calls `visit(name, makeData)` for every entry until it says true.
template <typename Visit>
void visitEntries(ContextObject& object, Visit&& visit) {
    for (const TextRow& row : textRows) {
        if (object.isBare || !isPresent(row, object)) continue;
        if (visit(row.name, [&] { return textData(object, row.text(object)); })) return;
    }
    if (!object.isBare &&
        visit(std::string_view(CMPIInvocationFlags), [&] { return flagsData(object); })) {
        return;
    }
    for (const ContextObject::Entry& entry : object.added) {
        if (visit(std::string_view(entry.name), [&] { return addedData(object, entry); })) return;
    }
}

CMPIData getEntry(const CMPIContext* context, const char* name, CMPIStatus* status) noexcept {
    return enter<ContextObject>(context, status, [&](ContextObject& object, CMPIrc& code) {
        const std::string_view wanted = required(name);
        CMPIData data{};
        code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        visitEntries(object, [&](std::string_view entry, auto&& makeData) {
            if (!equalNames(entry, wanted)) return false;
            data = makeData();
            code = CMPI_RC_OK;
            return true;
        });
        return data;
    });
}

CMPIData getEntryAt(const CMPIContext* context, CMPICount index, CMPIString** name,
                    CMPIStatus* status) noexcept {
    return enter<ContextObject>(context, status, [&](ContextObject& object, CMPIrc& code) {
        CMPIData data{};
        CMPICount place = 0;
        code = CMPI_RC_ERR_NO_SUCH_PROPERTY;
        visitEntries(object, [&](std::string_view entry, auto&& makeData) {
            if (place++ != index) return false;
            data = makeData();
            if (name) *name = &makeText(partOf(object), entry);
            code = CMPI_RC_OK;
            return true;
        });
        return data;
    });
}

CMPICount getEntryCount(const CMPIContext* context, CMPIStatus* status) noexcept {
    return enter<ContextObject>(context, status, [](ContextObject& object) {
        CMPICount count = 0;
        visitEntries(object, [&count](std::string_view, auto&&) {
            ++count;
            return false;
        });
        return count;
    });
}

void setText(std::string& text, const CMPIValue* value, CMPIType type) {
    const Value given = valueOf(value, type);
    if (type != CMPI_string && type != CMPI_chars) throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
    const Text* const content = given.get<Text>();
    text = content ? content->str() : std::string();
}

ContextObject::Entry entryFrom(std::string_view name, const CMPIValue* value, CMPIType type) {
    ContextObject::Entry entry{std::string(name), {}, std::nullopt};
    if (type != CMPI_ptr) {
        entry.value = valueOf(value, type);
    } else {
        entry.bytes = value ? readMember<CMPIValuePtr>(value) : CMPIValuePtr{nullptr, 0};
    }
    return entry;
}

void addOwnEntry(ContextObject& object, ContextObject::Entry entry) {
    if (ContextObject::Entry* const known = findNamed(object.added, entry.name)) {
        *known = std::move(entry);
    } else {
        object.added.push_back(std::move(entry));
    }
}

CMPIStatus addEntry(const CMPIContext* context, const char* name, const CMPIValue* value,
                    CMPIType type) noexcept {
    return enter<ContextObject>(context, [&](ContextObject& object) {
        const std::string_view wanted = required(name);
        object.isBare = false;
        if (const TextRow* const row = findNamed(textRows, wanted)) {
            return setText(row->text(object), value, type);
        }
        if (equalNames(CMPIInvocationFlags, wanted)) {
            if (type != CMPI_uint32) throw Failure{CMPI_RC_ERR_TYPE_MISMATCH};
            object.request.flags = value ? readMember<CMPIUint32>(value) : 0;
        } else {
            addOwnEntry(object, entryFrom(wanted, value, type));
        }
    });
}

}  // namespace

const CMPIContextFT ContextObject::table = {
    CMPICurrentVersion,
    releaseObject<ContextObject>,
    cloneObject<ContextObject>,
    getEntry,
    getEntryAt,
    getEntryCount,
    addEntry,
};

CMPIContext* makeContext(const Broker& broker, const RequestContext& context) {
    return &make<ContextObject>(Home{broker}, context);
}

CMPIContext* makeStartContext(const Broker& broker, const RequestContext& context) {
    if (!broker.manner().has(Habit::hasEmptyContextsAtStart)) return makeContext(broker, context);
    auto& made = make<ContextObject>(Home{broker}, RequestContext{});
    made.isBare = true;
    return &made;
}

const RequestContext& modelOf(const CMPIContext* context) {
    if (const auto* const object = findObject<ContextObject>(context)) return object->request;
    throw CimError(CimCode::failed, "a context of this broker was expected");
}

}  // namespace cimhost
