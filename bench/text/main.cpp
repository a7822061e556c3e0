// Measures the decoder of character references beside memchr, memmove and other decoders.
//   text_bench [options of Google Benchmark]   times; rows are named "row/variant/side"
//   text_bench --instructions                  a few rounds of our rows, for callgrind
#include "bench/text/Decoders.h"
#include "bench/text/Texts.h"
#include "common/entities.h"

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <deque>
#include <functional>
#include <string>
#include <string_view>

namespace {

constexpr std::size_t textSize = 64 * 1024;

constexpr Decoder library{"library", decodeWithLibrary};

struct Row {
    std::string name;
    std::function<void()> work;
    std::size_t bytes;
    std::size_t references;
};

// A deque: the benchmark library's closures point at its elements.
std::deque<Row> rows;

void addRow(std::string name, const std::string& text, std::function<void()> work) {
    rows.push_back({std::move(name), std::move(work), text.size(), countReferences(text)});
}

void measure(benchmark::State& state, const Row& row) {
    for ([[maybe_unused]] auto iteration : state) row.work();
    state.counters["bytes"] = static_cast<double>(row.bytes);
    state.counters["references"] = static_cast<double>(row.references);
}

void addCopyRow(const std::string& variant, const std::string& text) {
    addRow(variant + "/memmove", text, [text, room = std::string(text.size(), ' ')]() mutable {
        benchmark::DoNotOptimize(std::memmove(room.data(), text.data(), text.size()));
        benchmark::ClobberMemory();
    });
}

void addDecoderRow(const std::string& variant, const Decoder& decoder, const std::string& text) {
    std::string room(text.size() + extraRoom, ' ');
    const std::size_t wanted = decodeWithLibrary(text, room.data());
    if (decoder.decode(text, room.data()) != wanted) {
        std::fprintf(stderr, "%s decodes '%s' otherwise\n", decoder.name.data(), variant.c_str());
        std::exit(1);
    }
    addRow(variant + "/" + std::string(decoder.name), text,
           [text, room, decode = decoder.decode]() mutable {
               benchmark::DoNotOptimize(decode(text, room.data()));
           });
}

/// Text without references, in place: nothing is to be done but to look.
void addPlainRows() {
    std::string text = plainText(textSize);
    addRow("d1/no references/library", text,
           [text]() mutable { benchmark::DoNotOptimize(remove_xml_reference_chars(text.data())); });
    addRow("d1/no references/memchr", text,
           [text] { benchmark::DoNotOptimize(std::memchr(text.data(), '&', text.size())); });
}

template <typename Others>
void addReferenceRows(const std::string& variant, const std::string& text, const Others& others) {
    addCopyRow(variant, text);
    addDecoderRow(variant, library, text);
    for (const Decoder& other : others) addDecoderRow(variant, other, text);
}

void addHostileRow(std::size_t size) {
    const std::string text(size, '&');
    addDecoderRow("d5/" + std::to_string(size) + " times '&'", library, text);
}

void addRows() {
    addPlainRows();
    addReferenceRows("d2/1 % references", textWithReferences(textSize, 1, Names::xml), xmlDecoders);
    addReferenceRows("d3/30 % references", textWithReferences(textSize, 30, Names::html),
                     htmlDecoders);
    addReferenceRows("d4/references only", textWithReferences(textSize, 100, Names::xml),
                     xmlDecoders);
    addHostileRow(128 * 1024);
    addHostileRow(256 * 1024);
}

void countInstructions(const Row& row) {
    constexpr int rounds = 4;
    const std::string label = row.name + "*" + std::to_string(rounds);
    row.work();  // what is done for the first time only
    CALLGRIND_START_INSTRUMENTATION;
    for (int round = 0; round < rounds; ++round) row.work();
    CALLGRIND_STOP_INSTRUMENTATION;
    CALLGRIND_DUMP_STATS_AT(label.c_str());
}

}  // namespace

int main(int argc, char** argv) {
    addRows();
    if (argc == 2 && std::string_view(argv[1]) == "--instructions") {
        for (const Row& row : rows) {
            if (row.name.ends_with("/library")) countInstructions(row);
        }
        return 0;
    }
    for (const Row& row : rows) {
        benchmark::RegisterBenchmark(row.name.c_str(),
                                     [&row](benchmark::State& state) { measure(state, row); });
    }
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
