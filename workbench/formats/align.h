#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

// Which of the old items each new item was.
namespace vantrel::workbench {

inline constexpr std::size_t noMatch = static_cast<std::size_t>(-1);

// Equal numbers of items stand where they stood. Otherwise what is the same at both ends is found by `same(new, old)`,
// and the rest in between goes by position as far as it reaches.
template <typename Same>
std::vector<std::size_t> AlignItems(std::size_t newCount, std::size_t oldCount, Same same)
{
    const std::size_t least = std::min(newCount, oldCount);
    std::size_t head = 0;
    std::size_t tail = 0;
    if (newCount != oldCount) {
        while (head < least && same(head, head))
            ++head;
        while (tail < least - head && same(newCount - 1 - tail, oldCount - 1 - tail))
            ++tail;
    }
    std::vector<std::size_t> matches(newCount, noMatch);
    for (std::size_t i = 0; i < newCount; ++i) {
        if (i >= newCount - tail)
            matches[i] = oldCount - (newCount - i);
        else if (i < oldCount - tail)
            matches[i] = i;
    }
    return matches;
}

} // namespace vantrel::workbench
