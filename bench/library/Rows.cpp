#include "bench/library/Rows.h"

#include <valgrind/callgrind.h>

#include <deque>
#include <string>
#include <utility>

namespace {

// A deque: the benchmark library's closures point at its elements.
std::deque<Row> rows;

void countInstructions(const Row& row) {
    const std::string label = row.name + "*" + std::to_string(row.rounds);
    row.repeat(3);  // what is done for the first time only
    CALLGRIND_START_INSTRUMENTATION;
    row.repeat(row.rounds);
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS_AT(label.c_str());
}

}  // namespace

void addRow(Row row) {
    const Row& added = rows.emplace_back(std::move(row));
    benchmark::RegisterBenchmark(added.name.c_str(),
                                 [&added](benchmark::State& state) { added.measure(state); });
}

void countInstructions() {
    for (const Row& row : rows) countInstructions(row);
}
