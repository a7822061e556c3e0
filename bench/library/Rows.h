#pragma once

#include "bench/library/AllocationCount.h"
#include "bench/library/Stage.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <functional>
#include <string>

/// One thing to measure. Names read "row/variant/side", where the side is `library` for ours and
/// `anchor` for what it is measured by.
struct Row {
    std::string name;
    std::function<void(benchmark::State&)> measure;  ///< for as long as the benchmark library likes
    std::function<void(std::size_t)> repeat;         ///< this often, and nothing beside it
    std::size_t rounds;                              ///< how often for countInstructions()
};

/// Enough rounds for work that takes nanoseconds: the frame of the loop does not show.
constexpr std::size_t manyRounds = 512;

/// Makes the row known to the benchmark library and to countInstructions().
void addRow(Row row);

/// Runs each row a few times under callgrind, which dumps its instructions as "name*times".
/// Elsewhere it does nothing that can be seen.
void countInstructions();

/// The loop of a row: what is done for the first time only is done before it, and allocations are
/// counted.
template <typename Work>
void measureWork(benchmark::State& state, Work& work) {
    constexpr int warmUps = 3;
    for (int i = 0; i < warmUps; ++i) work();
    const std::size_t before = allocationCount();
    for ([[maybe_unused]] auto iteration : state) work();
    state.counters["allocations"] = benchmark::Counter(
        static_cast<double>(allocationCount() - before), benchmark::Counter::kAvgIterations);
}

/// Adds a row: `work()` is one operation.
template <typename Work>
void addRow(const std::string& name, Work work, std::size_t rounds = manyRounds) {
    addRow({name, [work](benchmark::State& state) mutable { measureWork(state, work); },
            [work](std::size_t times) mutable {
                for (std::size_t i = 0; i < times; ++i) work();
            },
            rounds});
}

/// The same for work that makes objects of the broker outside of any call.
template <typename Work>
void addScopedRow(const std::string& name, Work work) {
    addRow({name,
            [work](benchmark::State& state) mutable {
                RollingScope scope;
                auto scoped = [&] {
                    scope.next();
                    work();
                };
                measureWork(state, scoped);
            },
            [work](std::size_t times) mutable {
                RollingScope scope;
                for (std::size_t i = 0; i < times; ++i) {
                    scope.next();
                    work();
                }
            },
            manyRounds});
}

/// Each adds the rows of one subject.
void addEntryRows();
void addDecoratorRows();
void addLogRows();
void addEnumerationRows();
void addLookupRows();
void addAssociationRows();
void addPathRows();
void addProfileRows();
void addStoreRows();
void addIndicationRows();
