#include "testing/cimhost/testing/FaultyTables.h"

#include "testing/FaultPlan.h"
#include "testing/SlotList.h"

#include <array>
#include <mutex>
#include <type_traits>

namespace cimtest {

namespace {

using Fault = FaultyBroker::Fault;

template <typename Table>
struct Interposed {
    inline static std::once_flag once;
    inline static Table original{};
    inline static Table faulty{};
};

void interposeData(const CMPIData& data) {
    if ((data.state & (CMPI_nullValue | CMPI_badValue | CMPI_notFound)) != 0) return;
    if ((data.type & CMPI_ARRAY) != 0) return interpose(data.value.array);
    switch (data.type) {
        case CMPI_instance: return interpose(data.value.inst);
        case CMPI_ref: return interpose(data.value.ref);
        case CMPI_args: return interpose(data.value.args);
        case CMPI_filter: return interpose(data.value.filter);
        case CMPI_enumeration: return interpose(data.value.Enum);
        case CMPI_string: return interpose(data.value.string);
        case CMPI_dateTime: return interpose(data.value.dateTime);
        default: return;
    }
}

template <typename T>
concept HandlePointer = requires(T value) {
    value->hdl;
    value->ft;
};

template <typename T>
void interposeResult(const T& result) {
    if constexpr (std::is_same_v<T, CMPIData>) {
        interposeData(result);
    } else if constexpr (std::is_same_v<T, CMPIStatus>) {
        interpose(result.msg);
    } else if constexpr (HandlePointer<T>) {
        interpose(result);
    }
}

// What a call gave out through an argument; the others are not looked at, for they may be gone.
template <typename T>
void interposeOutput(const T& argument) {
    if constexpr (std::is_same_v<T, CMPIStatus*>) {
        interpose(argument->msg);
    } else if constexpr (std::is_same_v<T, CMPIString**> || std::is_same_v<T, CMPIArray**>) {
        if (argument) interpose(*argument);
    }
}

template <typename T>
void supplyStatus(T& argument, CMPIStatus& own) {
    if constexpr (std::is_same_v<T, CMPIStatus*>) {
        if (!argument) argument = &own;
    }
}

template <typename T>
bool succeeded(const T& argument) {
    if constexpr (std::is_same_v<T, CMPIStatus*>) return argument->rc == CMPI_RC_OK;
    if constexpr (std::is_same_v<T, CMPIStatus>) return argument.rc == CMPI_RC_OK;
    return true;
}

template <typename T>
void setStatus(const T& argument, CMPIrc code) {
    if constexpr (std::is_same_v<T, CMPIStatus*>) *argument = {code, nullptr};
}

template <typename T>
T failedResult(const FaultPlan& plan, const T& real) {
    if constexpr (std::is_same_v<T, CMPIStatus>) {
        return {plan.code, nullptr};
    } else if constexpr (std::is_same_v<T, CMPIData>) {
        if (plan.fault == Fault::status) return {CMPI_null, CMPI_badValue, {}};
        if (plan.fault == Fault::null) return {real.type, CMPI_nullValue, {}};
        const bool isByte = real.type == CMPI_uint8;
        return {static_cast<CMPIType>(isByte ? CMPI_boolean : CMPI_uint8), CMPI_goodValue, {}};
    } else if constexpr (std::is_same_v<T, int>) {
        return plan.fault == Fault::status ? static_cast<int>(plan.code) : 0;
    } else {
        return T{};
    }
}

bool endsSomething(std::string_view slot) noexcept {
    constexpr auto verbs =
        std::to_array<std::string_view>({"release", "free", "cmpiFree", "detach", "destroy"});
    const std::string_view function = slot.substr(slot.find('.') + 1);
    for (const std::string_view verb : verbs) {
        if (function.starts_with(verb)) return true;
    }
    return false;
}

template <auto member>
struct Interposer;

template <typename Table, typename Result, typename... Arguments,
          Result (*Table::*member)(Arguments...)>
struct Interposer<member> {
    inline static Slot slot;

    static Result call(Arguments... arguments) {
        const FaultPlan plan = planFor(slot);
        const auto real = Interposed<Table>::original.*member;
        if constexpr (std::is_void_v<Result>) {
            // Nobody would see it fail.
            real(arguments...);
        } else {
            CMPIStatus own{CMPI_RC_OK, nullptr};
            (supplyStatus(arguments, own), ...);
            if (!plan.slot) return passed(real(arguments...), arguments...);
            // An object that is made and not handed out would never be released.
            const bool showsType = std::is_same_v<Result, CMPIData> && plan.fault != Fault::status;
            const bool needsReal = showsType || endsSomething(slot.name);
            const Result result = needsReal ? real(arguments...) : Result{};
            (setStatus(arguments, plan.fault == Fault::status ? plan.code : CMPI_RC_OK), ...);
            return failedResult(plan, result);
        }
    }

    static auto passed(auto result, const Arguments&... arguments) {
        // Failed calls leave results and outputs without meaning.
        if (succeeded(result) && (succeeded(arguments) && ...)) {
            interposeResult(result);
            (interposeOutput(arguments), ...);
        }
        return result;
    }
};

template <typename Table>
const Table* faultyTable(const Table& real) {
    using Tables = Interposed<Table>;
    std::call_once(Tables::once, [&real] {
        Tables::original = real;
        Tables::faulty = real;
        visitSlots(
            TableOf<Table>{}, []<auto member>(MemberOf<member>, std::string_view) {
                Tables::faulty.*member = Interposer<member>::call;
            });
    });
    return &Tables::faulty;
}

}  // namespace

std::vector<Slot*>& allSlots() {
    static std::vector<Slot*> slots = [] {
        std::vector<Slot*> all;
        visitTables([&all](auto table) {
            visitSlots(
                table, [&all]<auto member>(MemberOf<member>, std::string_view name) {
                    Interposer<member>::slot.name = name;
                    all.push_back(&Interposer<member>::slot);
                });
        });
        return all;
    }();
    return slots;
}

template <typename Handle>
void interpose(const Handle* object) {
    if (!object) return;
    auto* const handle = const_cast<Handle*>(object);
    const auto* const faulty = faultyTable(*handle->ft);
    if (handle->ft != faulty) handle->ft = faulty;
}

template void interpose(const CMPIContext*);
template void interpose(const CMPIResult*);
template void interpose(const CMPIString*);
template void interpose(const CMPIArray*);
template void interpose(const CMPIEnumeration*);
template void interpose(const CMPIInstance*);
template void interpose(const CMPIObjectPath*);
template void interpose(const CMPIArgs*);
template void interpose(const CMPIDateTime*);
template void interpose(const CMPISelectExp*);
template void interpose(const CMPISelectCond*);
template void interpose(const CMPISubCond*);
template void interpose(const CMPIPredicate*);
template void interpose(const CMPIError*);
template void interpose(const CMPIPropertyList*);
template void interpose(const CMPIEnumerationFilter*);

cimhost::ObjectTables interposed(const cimhost::ObjectTables& real) {
    const auto at = [&]<typename Table>(TableOf<Table>, cimhost::ObjectKind kind) -> const void* {
        const void* const table = real[static_cast<std::size_t>(kind)];
        return faultyTable(*static_cast<const Table*>(table));
    };
    using Kind = cimhost::ObjectKind;
    return {at(TableOf<CMPIObjectPathFT>(), Kind::objectPath),
            at(TableOf<CMPIInstanceFT>(), Kind::instance),
            at(TableOf<CMPIArgsFT>(), Kind::arguments),
            at(TableOf<CMPIStringFT>(), Kind::string),
            at(TableOf<CMPIArrayFT>(), Kind::array),
            at(TableOf<CMPIDateTimeFT>(), Kind::dateTime),
            at(TableOf<CMPIEnumerationFT>(), Kind::enumeration),
            at(TableOf<CMPIContextFT>(), Kind::context),
            at(TableOf<CMPIResultFT>(), Kind::result),
            at(TableOf<CMPIErrorFT>(), Kind::error),
            at(TableOf<CMPIPropertyListFT>(), Kind::propertyList),
            at(TableOf<CMPIEnumerationFilterFT>(), Kind::enumerationFilter),
            at(TableOf<CMPISelectExpFT>(), Kind::selectExpression),
            at(TableOf<CMPISelectCondFT>(), Kind::selectCondition),
            at(TableOf<CMPISubCondFT>(), Kind::subCondition),
            at(TableOf<CMPIPredicateFT>(), Kind::predicate)};
}

CMPIBroker interposed(const CMPIBroker& real) {
    // Brokers of one program share their tables but the first, which therefore is copied anew.
    const auto* const first = faultyTable(*real.bft);
    const_cast<CMPIBrokerFT*>(first)->brokerCapabilities = real.bft->brokerCapabilities;
    return {real.hdl, first, faultyTable(*real.eft), faultyTable(*real.xft),
            real.mft ? faultyTable(*real.mft) : nullptr};
}

}  // namespace cimtest
