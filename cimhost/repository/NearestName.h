#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace cimhost {

/// Finds, among the names that there are, the one that somebody meant who wrote another. Two names
/// are near when a few characters lie between them: one of a short name, three of a long one, each
/// left out, put in, exchanged, or swapped with its neighbour. Case does not count. What is offered
/// must outlive this object; the order does not matter. For one thread.
class NearestName {
public:
    explicit NearestName(std::string_view written) noexcept;

    void offer(std::string_view name) noexcept;

    /// The nearest name that was offered; empty when none is near.
    std::string_view found() const noexcept { return _found; }

    /// `; did you mean 'Name'?`, to be put behind a message; empty when none is near.
    std::string words() const;

private:
    std::string_view _written;
    std::string_view _found;
    std::size_t _distance;  ///< one more than may lie between, while nothing is found
};

/// The words for a range of what has a name.
template <typename Range, typename Projection = std::identity>
std::string didYouMean(std::string_view written, const Range& range, Projection nameOf = {}) {
    NearestName nearest(written);
    for (const auto& each : range) nearest.offer(std::invoke(nameOf, each));
    return nearest.words();
}

}  // namespace cimhost
