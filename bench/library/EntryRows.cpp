// a1: from the MI table into a C++ provider, against a C function in the table.
#include "bench/library/Rows.h"
#include "bench/library/Sides.h"
#include "bench/library/Stage.h"
#include "cmpicpp/CmpiInstanceProvider.h"
#include "cmpicpp/CmpiModule.h"

namespace {

using CmpiCpp::CmpiContext;
using CmpiCpp::CmpiObjectPath;

class NothingProvider : public CmpiCpp::CmpiInstanceProvider {
public:
    CMPIBroker* getBroker() override { return nullptr; }
    void enumInstanceNames(const CmpiContext&, const CmpiObjectPath&,
                           CmpiCpp::CmpiObjectPathResult&) override {}
    void enumInstances(const CmpiContext&, const CmpiObjectPath&, const char**,
                       CmpiCpp::CmpiInstanceResult&) override {}
    void getInstance(const CmpiContext&, const CmpiObjectPath&, const char**,
                     CmpiCpp::CmpiInstanceResult&) override {}
};

CmpiCpp::CmpiProvider* makeNothing(const CmpiCpp::CmpiBroker&, const CMPIContext*) {
    return new NothingProvider;
}

constinit CmpiCpp::CmpiModule module("Nothing", makeNothing);

// The anchor, and a result that costs next to nothing, so that what is left is the way in and out.
extern "C" {

CMPIStatus takeDone(const CMPIResult*) { return {CMPI_RC_OK, nullptr}; }

CMPIStatus plainGetInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                            const CMPIObjectPath*, const char**) {
    return result->ft->returnDone(result);
}

}  // extern "C"

CMPIInstanceMI* libraryMI() {
    const Call call("Bench_Nothing");
    return module.createInstanceMI(stageBroker().handle(), call.context, nullptr);
}

CMPIInstanceMI* plainMI() {
    static CMPIInstanceMIFT table = [] {
        CMPIInstanceMIFT empty{};
        empty.getInstance = plainGetInstance;
        return empty;
    }();
    static CMPIInstanceMI mi{nullptr, &table};
    return &mi;
}

const CMPIResult* cheapResult() {
    static CMPIResultFT table = [] {
        CMPIResultFT empty{};
        empty.returnDone = takeDone;
        return empty;
    }();
    static const CMPIResult result{nullptr, &table};
    return &result;
}

void addEntry(const char* name, CMPIInstanceMI* mi) {
    addRow(name, [mi, result = cheapResult()] {
        CMPIStatus status = mi->ft->getInstance(mi, nullptr, result, nullptr, nullptr);
        benchmark::DoNotOptimize(status);
    });
}

}  // namespace

void addEntryRows() {
    addEntry("a1/entry/library", libraryMI());
    addEntry("a1/entry/anchor", plainMI());
}
