// SPDX-License-Identifier: Apache-2.0
#include "host/Suggestions.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace {

constexpr std::size_t kMost = 3;
constexpr std::size_t kLongestCompared = 80;  // bytes; the distance costs their square
constexpr std::size_t kShortestPart = 3;

// As names are compared: in lower case, without the star of a keyword.
std::string Compared(std::string text) {
    if (text.starts_with('*')) {
        text.erase(0, 1);
    }
    return Suggestions::Lower(std::move(text));
}

std::size_t Distance(std::string const& left, std::string const& right) {
    std::size_t const width = right.size() + 1;
    std::vector<std::size_t> table((left.size() + 1) * width);
    auto const at = [&](std::size_t row, std::size_t column) -> std::size_t& {
        return table[row * width + column];
    };
    for (std::size_t row = 0; row <= left.size(); ++row) {
        for (std::size_t column = 0; column <= right.size(); ++column) {
            if (row == 0 || column == 0) {
                at(row, column) = row + column;
                continue;
            }
            std::size_t const differs = left[row - 1] == right[column - 1] ? 0 : 1;
            std::size_t best = std::min({at(row - 1, column) + 1, at(row, column - 1) + 1,
                                         at(row - 1, column - 1) + differs});
            bool const isSwap = row > 1 && column > 1 && left[row - 1] == right[column - 2] &&
                                left[row - 2] == right[column - 1];
            at(row, column) = isSwap ? std::min(best, at(row - 2, column - 2) + 1) : best;
        }
    }
    return table.back();
}

}  // namespace

std::string Suggestions::Lower(std::string text) {
    std::ranges::transform(text, text.begin(), [](char byte) {
        return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
    });
    return text;
}

std::vector<std::string> Suggestions::Nearest(std::string const& text,
                                              std::vector<std::string> const& known) {
    struct Candidate {
        std::size_t distance;
        std::string const* name;
    };
    std::string const wanted = Compared(text);
    std::size_t const most = std::max<std::size_t>(1, wanted.size() / 3);
    std::vector<Candidate> near;
    for (std::string const& name : known) {
        std::string const other = Compared(name);
        if (wanted.empty() || wanted.size() > kLongestCompared || other.size() > kLongestCompared) {
            continue;
        }
        std::size_t const distance = Distance(wanted, other);
        bool const isPart =
            wanted.size() >= kShortestPart && other.find(wanted) != std::string::npos;
        if (distance <= most) {
            near.push_back({distance, &name});
        } else if (isPart) {
            near.push_back({most + distance, &name});
        }
    }
    std::ranges::stable_sort(near, {}, &Candidate::distance);
    std::vector<std::string> names;
    for (Candidate const& candidate : near) {
        if (candidate.distance > 0 && near.front().distance == 0) {
            break;  // the same but for case
        }
        if (names.size() < kMost && std::ranges::count(names, *candidate.name) == 0) {
            names.push_back(*candidate.name);
        }
    }
    return names;
}

std::string Suggestions::List(std::vector<std::string> const& names, char const* conjunction) {
    std::string text;
    for (std::size_t index = 0; index < names.size(); ++index) {
        char const* const between = index == 0 ? "" : ", ";
        bool const isLast = index > 0 && index + 1 == names.size();
        text += (isLast ? " " + std::string(conjunction) + " " : between) + names[index];
    }
    return text;
}

std::string Suggestions::Ask(std::vector<std::string> const& nearest) {
    return nearest.empty() ? std::string() : "; did you mean " + List(nearest, "or") + "?";
}
