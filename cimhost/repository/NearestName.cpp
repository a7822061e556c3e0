#include "cimhost/repository/NearestName.h"

#include <algorithm>
#include <array>
#include <utility>

namespace cimhost {

namespace {

constexpr std::size_t longestName = 128;

using Row = std::array<std::size_t, longestName + 1>;

char lowered(char character) noexcept {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character + ('a' - 'A'))
                                                : character;
}

std::size_t mostBetween(std::size_t size) noexcept {
    if (size < 6) return 1;
    return size < 12 ? 2 : 3;
}

// The changes that lead from one to the other, or some number from `enough` on.
std::size_t distanceOf(std::string_view left, std::string_view right, std::size_t enough) noexcept {
    if (std::max(left.size(), right.size()) > longestName) return enough;
    Row beforeLast{};
    Row last{};
    Row row{};
    for (std::size_t j = 0; j <= right.size(); ++j) row[j] = j;
    for (std::size_t i = 1; i <= left.size(); ++i) {
        beforeLast = std::exchange(last, row);
        row[0] = i;
        std::size_t least = i;
        const char mine = lowered(left[i - 1]);
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const char other = lowered(right[j - 1]);
            row[j] =
                std::min({last[j] + 1, row[j - 1] + 1, last[j - 1] + (mine == other ? 0U : 1U)});
            if (i > 1 && j > 1 && mine == lowered(right[j - 2]) && lowered(left[i - 2]) == other) {
                row[j] = std::min(row[j], beforeLast[j - 2] + 1);
            }
            least = std::min(least, row[j]);
        }
        if (least >= enough) return enough;
    }
    return row[right.size()];
}

}  // namespace

NearestName::NearestName(std::string_view written) noexcept
    : _written(written), _distance(mostBetween(written.size()) + 1) {}

void NearestName::offer(std::string_view name) noexcept {
    const auto [shorter, longer] = std::minmax({name.size(), _written.size()});
    // A name of which nothing would be left is none that was meant.
    if (longer - shorter > _distance || shorter < 2) return;
    const std::size_t distance = distanceOf(_written, name, _distance + 1);
    const bool isFirstOfEqual = distance == _distance && !_found.empty() && name < _found;
    if (distance >= _distance && !isFirstOfEqual) return;
    _found = name;
    _distance = distance;
}

std::string NearestName::words() const {
    return _found.empty() ? std::string() : "; did you mean '" + std::string(_found) + "'?";
}

}  // namespace cimhost
