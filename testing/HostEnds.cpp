#include "testing/HostEnds.h"

#include "cimhost/repository/CimError.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace cimtest {
namespace {

LateFailure& lateFailure() {
    static LateFailure handler = [](const std::string& words) {
        std::fprintf(stderr, "%s\n", words.c_str());
        std::abort();
    };
    return handler;
}

}  // namespace

void setLateFailure(LateFailure handler) { lateFailure() = std::move(handler); }

void failLate(const std::string& words) { lateFailure()(words); }

void HostLog::write(Level level, std::string_view source, std::string_view message) noexcept try {
    constexpr std::array names = {"error", "warning", "information", "debug"};
    lines.add(
        {names.at(static_cast<std::size_t>(level)), std::string(source), std::string(message)});
} catch (const std::exception&) {
    // Short of memory, as a test may want it: the line is lost.
}

void HostAlerts::deliver(const cimhost::RequestContext&, std::string_view nameSpace,
                         const cimhost::Instance& indication) {
    try {
        judge(nameSpace, indication);
    } catch (const cimhost::CimError& error) {
        failLate(error.what());
        throw;
    }
    captured.add(Instance(indication));
}

void HostAlerts::judge(std::string_view nameSpace, const cimhost::Instance& instance) const {
    const std::string provider = "of " + instance.className();
    const auto* const definition = _repository.get(nameSpace).findClass(instance.className());
    if (!definition) {
        cimhost::ObjectPath path = instance.path;
        path.nameSpace = nameSpace;
        return _judge.tellUnknownClass(provider, path);
    }
    const cimhost::ClassRules& rules = _judge.rulesOf(*definition);
    if (!rules.areClean(instance.properties, nullptr)) _judge.mend(provider, rules, instance);
}

}  // namespace cimtest
