// How PYLUtil hands a group's rolled-up status to the consolidated-status provider.

#include "cmpi/cmpift.h"
#include "cmpicpp/CmpiStatus.h"
#include "common/PYLUtil.h"

#include <optional>

namespace PYL {

using CmpiCpp::CmpiArgs;
using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiBroker;
using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiHandle;
using CmpiCpp::CmpiInstance;
using CmpiCpp::CmpiStatus;

namespace {

constexpr const char* statusProperty = "GroupOperationalStatus";

/// The status to post; none, with a line in the log, when the property is not what it must be.
std::optional<operationalStatus> readStatus(const CmpiInstance& instance, Logger& log) {
    const auto property = instance.getProperty(statusProperty);
    if (property.getType() != CMPI_uint16 || !property.isArray()) {
        log.error("Bad type for GroupOperationalStatus in PYLUtil::postStatus()");
        return std::nullopt;
    }
    // Some object managers give an empty array back as NULL.
    const auto statuses = property.isNull() ? CmpiArray() : property.asArray();
    if (statuses.getSize() == 0) {
        log.error("No elements in GroupOperationalStatus in PYLUtil::postStatus()");
        return std::nullopt;
    }
    return opstatusFromUint16(static_cast<unsigned short>(statuses.getElementAt(0).asUint64()));
}

std::optional<operationalStatus> readStatusIfPresent(const CmpiInstance& instance, Logger& log) {
    try {
        return readStatus(instance, log);
    } catch (const CmpiStatus& status) {
        if (status.rc() != CMPI_RC_ERR_NOT_FOUND) throw;
        log.error("GroupOperationalStatus not found in collection in PYLUtil::postStatus()");
        return std::nullopt;
    }
}

/// Asks for no status, of neither list: what matters is whether there is one, and addArg() says so.
CmpiArgs makeArguments(const CMPIBroker* broker) {
    return CmpiArgs(CmpiHandle<CMPIArgs>::fresh(broker, broker->eft->newArgs(broker, nullptr)));
}

/// What the method answers. Throws the CmpiStatus of what fails before it is called.
CMPIStatus invokePostStatus(const CmpiContext& ctx, const CmpiInstance& instance,
                            operationalStatus status) {
    const auto* const broker = PYLUtil::getBroker();
    const auto path = CmpiCpp::makeCmpiObjectPath(CmpiBroker(broker), BaseServerNameSpace,
                                                  ScopedCentralClassName);
    auto in = makeArguments(broker);
    auto* const out = broker->eft->newArgs(broker, nullptr);
    in.addArg("ClassName", instance.getClassName().str());
    in.addArg("Status", static_cast<unsigned short>(status));
    CMPIStatus rc{};
    broker->bft->invokeMethod(broker, ctx.toCMPI(), path.toCMPI(), "PostStatus", in.toCMPI(), out,
                              &rc);
    return rc;
}

}  // namespace

void PYLUtil::postStatus(Logger& log, const CmpiContext& ctx, const CmpiInstance& instance) {
    if (isAgentlessOnlyServer(log)) {
        log.info("skipping post as server is agentless in PYLUtil::postStatus()");
        return;
    }
    const auto status = readStatusIfPresent(instance, log);
    if (!status) return;
    // Nobody waits for the post: the group's own provider must not fail for it.
    try {
        const auto rc = invokePostStatus(ctx, instance, *status);
        if (rc.rc == CMPI_RC_OK) return;
        log.info("ignoring exception thrown in invokeMethod() upcall in PYLUtil::postStatus(): %s",
                 CmpiStatus(rc).str());
    } catch (const CmpiStatus& failure) {
        log.error("the post could not be prepared in PYLUtil::postStatus(): %s", failure.str());
    }
}

}  // namespace PYL
