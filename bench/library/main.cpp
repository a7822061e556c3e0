// Measures the support library against plain C over the same broker tables.
//   library_bench [options of Google Benchmark]   times and allocations
//   library_bench --instructions                  a few rounds of each row, for callgrind
#include "bench/library/Rows.h"

#include <benchmark/benchmark.h>

#include <string_view>

int main(int argc, char** argv) {
    addEntryRows();
    addDecoratorRows();
    addLogRows();
    addEnumerationRows();
    addLookupRows();
    addAssociationRows();
    addPathRows();
    addProfileRows();
    addStoreRows();
    addIndicationRows();
    if (argc == 2 && std::string_view(argv[1]) == "--instructions") {
        countInstructions();
        return 0;
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
