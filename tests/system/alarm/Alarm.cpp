#include "cmpi/cmpimacs.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <string>
#include <thread>

// Written against the C interface alone, as modules of others are.

namespace {

constexpr const char* nameSpace = "root/test";
constexpr CMPIStatus ok{CMPI_RC_OK, nullptr};

/// What every factory sets: those of several providers may be called at once.
class {
public:
    void operator=(const CMPIBroker* ours) noexcept { _broker = ours; }
    operator const CMPIBroker*() const noexcept { return _broker; }
    const CMPIBroker* operator->() const noexcept { return _broker; }

private:
    std::atomic<const CMPIBroker*> _broker = nullptr;
} broker;

std::mutex mutex;
std::string told;  // guarded by the mutex

void note(const std::string& line) {
    const std::lock_guard lock(mutex);
    told += line + ";";
}

// Not every object manager names the class of a filter.
std::string named(const char* text) { return text ? text : ""; }

std::string textOf(const CMPIString* text) {
    return named(text ? text->ft->getCharPtr(text, nullptr) : nullptr);
}

std::string filterText(const CMPISelectExp* filter) {
    return textOf(filter->ft->getString(filter, nullptr));
}

CMPIStatus fail(CMPIrc code, const char* text) {
    return {code, broker->eft->newString(broker, text, nullptr)};
}

void setText(CMPIInstance* instance, const char* name, const char* text) {
    instance->ft->setProperty(instance, name, reinterpret_cast<const CMPIValue*>(text), CMPI_chars);
}

template <typename Number>
void setNumber(CMPIInstance* instance, const char* name, Number CMPIValue::*member, Number number,
               CMPIType type) {
    CMPIValue value{};
    value.*member = number;
    instance->ft->setProperty(instance, name, &value, type);
}

CMPIrc raise(const CMPIContext* context, const std::string& className, std::uint32_t number) {
    void* const mark = broker->mft ? broker->mft->mark(broker, nullptr) : nullptr;
    CMPIObjectPath* const path =
        broker->eft->newObjectPath(broker, nameSpace, className.c_str(), nullptr);
    CMPIInstance* const alarm = broker->eft->newInstance(broker, path, nullptr);
    setNumber(alarm, "Number", &CMPIValue::uint32, number, CMPI_uint32);
    setNumber<CMPIUint16>(alarm, "PerceivedSeverity", &CMPIValue::uint16,
                          static_cast<CMPIUint16>(number % 2 == 0 ? 6 : 2), CMPI_uint16);
    setNumber<CMPIUint16>(alarm, "AlertType", &CMPIValue::uint16, 5, CMPI_uint16);
    setText(alarm, "Message", "the bell <rings> & \nrings");
    const CMPIrc code = broker->bft->deliverIndication(broker, context, nameSpace, alarm).rc;
    if (mark) broker->mft->release(broker, mark);
    return code;
}

CMPIrc raiseMany(const CMPIContext* context, const std::string& className, std::uint32_t count) {
    for (std::uint32_t i = 0; i < count; ++i) {
        if (const CMPIrc code = raise(context, className, i); code != CMPI_RC_OK) return code;
    }
    return CMPI_RC_OK;
}

CMPIrc raiseAside(const CMPIContext* context, const std::string& className, std::uint32_t count) {
    CMPIContext* const own = broker->bft->prepareAttachThread(broker, context);
    CMPIrc code = CMPI_RC_OK;
    std::thread([&] {
        broker->bft->attachThread(broker, own);
        code = raiseMany(own, className, count);
        broker->bft->detachThread(broker, own);
    }).join();
    return code;
}

// The bell.

CMPIStatus cleanUpBell(CMPIMethodMI*, const CMPIContext*, CMPIBoolean) { return ok; }

CMPIStatus invokeMethod(CMPIMethodMI*, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath*, const char* method, const CMPIArgs* in, CMPIArgs*) {
    CMPIValue answer{};
    if (std::string(method) == "Told") {
        const std::lock_guard lock(mutex);
        answer.string = broker->eft->newString(broker, told.c_str(), nullptr);
        result->ft->returnData(result, &answer, CMPI_string);
        return ok;
    }
    const std::string className = textOf(in->ft->getArg(in, "ClassName", nullptr).value.string);
    const std::uint32_t count = in->ft->getArg(in, "Count", nullptr).value.uint32;
    const bool isAside = std::string(method) == "RingAside";
    answer.uint32 = static_cast<std::uint32_t>(isAside ? raiseAside(context, className, count)
                                                       : raiseMany(context, className, count));
    result->ft->returnData(result, &answer, CMPI_uint32);
    return ok;
}

const CMPIMethodMIFT bellTable = {CMPIVersion200, CMPIVersion200, "bell", cleanUpBell,
                                  invokeMethod};
CMPIMethodMI bell{nullptr, &bellTable};

// The alarms.

CMPIStatus cleanUpAlarms(CMPIIndicationMI*, const CMPIContext*, CMPIBoolean) { return ok; }

CMPIStatus authorizeFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp* filter,
                           const char* className, const CMPIObjectPath* path, const char*) {
    note("authorize " + named(className) + " " + textOf(path->ft->getNameSpace(path, nullptr)));
    if (filterText(filter).find("Forbidden") != std::string::npos) {
        return fail(CMPI_RC_ERR_ACCESS_DENIED, "that word is forbidden");
    }
    while (filterText(filter).find("Hanging") != std::string::npos) {
        std::this_thread::sleep_for(std::chrono::hours(1));
    }
    return ok;
}

// Filled at the level of 2.0, where the slot has one argument less.
CMPIStatus mustPoll(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp* filter, const char*,
                    const CMPIObjectPath*) {
    note("mustPoll " + filterText(filter).substr(0, 6));
    return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus activateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*,
                          const char* className, const CMPIObjectPath*, CMPIBoolean first) {
    note("activate " + named(className) + (first ? " first" : " again"));
    return ok;
}

CMPIStatus deActivateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*,
                            const char* className, const CMPIObjectPath*, CMPIBoolean last) {
    note("deactivate " + named(className) + (last ? " last" : " one"));
    return ok;
}

CMPIStatus enableIndications(CMPIIndicationMI*, const CMPIContext*) {
    note("enable");
    return ok;
}

CMPIStatus disableIndications(CMPIIndicationMI*, const CMPIContext*) {
    note("disable");
    return ok;
}

CMPIStatus refuseFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp*, const char*,
                        const CMPIObjectPath*, const char*) {
    return fail(CMPI_RC_ERR_INVALID_QUERY, "no filter is good enough");
}

CMPIIndicationMIFT makeTable(decltype(CMPIIndicationMIFT::authorizeFilter) authorize) {
    CMPIIndicationMIFT table{};
    table.ftVersion = CMPIVersion200;
    table.miVersion = CMPIVersion200;
    table.miName = "alarm";
    table.cleanup = cleanUpAlarms;
    table.authorizeFilter = authorize;
    table.mustPoll = reinterpret_cast<decltype(table.mustPoll)>(reinterpret_cast<void*>(mustPoll));
    table.activateFilter = activateFilter;
    table.deActivateFilter = deActivateFilter;
    table.enableIndications = enableIndications;
    table.disableIndications = disableIndications;
    return table;
}

const CMPIIndicationMIFT alarmTable = makeTable(authorizeFilter);
const CMPIIndicationMIFT pickyTable = makeTable(refuseFilter);
CMPIIndicationMI alarms{nullptr, &alarmTable};
CMPIIndicationMI pickyAlarms{nullptr, &pickyTable};

}  // namespace

#define TEST_ENTRY_POINT extern "C" __attribute__((visibility("default")))

TEST_ENTRY_POINT CMPIMethodMI* BellProvider_Create_MethodMI(const CMPIBroker* ours,
                                                            const CMPIContext*, CMPIStatus*) {
    broker = ours;
    return &bell;
}

TEST_ENTRY_POINT CMPIIndicationMI* AlarmProvider_Create_IndicationMI(const CMPIBroker* ours,
                                                                     const CMPIContext*,
                                                                     CMPIStatus*) {
    broker = ours;
    return &alarms;
}

TEST_ENTRY_POINT CMPIIndicationMI* PickyProvider_Create_IndicationMI(const CMPIBroker* ours,
                                                                     const CMPIContext*,
                                                                     CMPIStatus*) {
    broker = ours;
    return &pickyAlarms;
}
