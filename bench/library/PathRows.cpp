// c1: a path of four keys built, compared with its equal, and written as text.
#include "bench/library/PlainPath.h"
#include "bench/library/Rows.h"
#include "bench/library/Stage.h"
#include "bench/library/WrapperProvider.h"

#include <cstdlib>
#include <string>

namespace {

const WrapperDevice device{"server17.example.com", stageNameSpace, benchDeviceClass, "0000:02:05.1",
                           5};
const PlainDevice plainDevice{"server17.example.com", stageNameSpace, benchDeviceClass,
                              "0000:02:05.1", 5};

CMPIObjectPath* plainPath() {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    return plainDevicePath(stageBroker().handle(), &plainDevice, &status);
}

// Paths that outlive the scope they were made in.
CmpiCpp::CmpiObjectPath keptPath() {
    const cimhost::CallScope scope;
    return device.path().clone();
}

void addBuilds() {
    addScopedRow("c1/build/library", [] {
        auto path = device.path();
        benchmark::DoNotOptimize(path);
    });
    addScopedRow("c1/build/anchor", [] {
        auto* path = plainPath();
        benchmark::DoNotOptimize(path);
    });
}

void addComparisons() {
    addScopedRow("c1/compare/library", [left = keptPath(), right = keptPath()] {
        bool same = left == right;
        benchmark::DoNotOptimize(same);
    });
    addScopedRow("c1/compare/anchor", [left = keptPath(), right = keptPath()] {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        int same = plainSamePath(left.toCMPI(), right.toCMPI(), &status);
        benchmark::DoNotOptimize(same);
    });
}

void addTexts() {
    addScopedRow("c1/text/library", [path = keptPath()] {
        auto text = path.str();
        benchmark::DoNotOptimize(text);
    });
    addScopedRow("c1/text/anchor", [path = keptPath()] {
        CMPIStatus status{CMPI_RC_OK, nullptr};
        auto* text = plainPathText(path.toCMPI(), &status);
        benchmark::DoNotOptimize(text);
        std::free(text);
    });
}

}  // namespace

void addPathRows() {
    addBuilds();
    addComparisons();
    addTexts();
}
