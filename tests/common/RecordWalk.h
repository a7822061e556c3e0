#pragma once

#include "common/detail/WordReader.h"
#include "tests/common/PlainStore.h"

#include <string>
#include <string_view>
#include <vector>

/// All records as the store takes them from a WordReader, words cut at their zero bytes as C does.
inline std::vector<PlainRecord> readRecords(int descriptor) {
    const auto cut = [](std::string_view word) {
        return std::string(word.substr(0, word.find('\0')));
    };
    std::vector<PlainRecord> records;
    PYL::WordReader words(descriptor);
    for (long at = 0;; at = words.skipSpace()) {
        const auto key = words.next();
        if (key.empty()) return records;
        auto& record = records.emplace_back();
        record.position = at;
        record.key = cut(key);
        const auto value = words.next();
        record.words = value.empty() ? 1 : 2;
        record.value = cut(value);
    }
}
