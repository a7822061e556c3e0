#pragma once

#include <cstddef>
#include <deque>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Tables that end with a mark, seen as spans, and copies of them. For the records of this folder.
namespace PYL {

/// The entries of a table up to its end mark, without it. The table must outlive the result.
template <typename Entry>
constexpr std::span<const Entry> entriesOf(const Entry* table, Entry endMark) noexcept {
    std::size_t size = 0;
    while (table[size] != endMark) ++size;
    return {table, size};
}

constexpr std::span<const char* const> namesOf(const char* const* table) noexcept {
    return entriesOf<const char*>(table, nullptr);
}

/// Copies of the texts and tables that a record is made from, so that nothing of the maker's need
/// outlive the making. What it returns is good for as long as it lives.
class TableCopies {
public:
    std::string_view text(std::string_view text) { return _texts.emplace_back(text); }

    std::span<const int> numbers(std::span<const int> table) {
        return _numbers.emplace_back(table.begin(), table.end());
    }

    std::span<const char* const> names(std::span<const char* const> table) {
        auto& copy = _names.emplace_back();
        copy.reserve(table.size());
        for (const char* name : table) copy.push_back(_texts.emplace_back(name).c_str());
        return copy;
    }

private:
    // Containers whose elements stay where they are.
    std::deque<std::string> _texts;
    std::deque<std::vector<int>> _numbers;
    std::deque<std::vector<const char*>> _names;
};

}  // namespace PYL
