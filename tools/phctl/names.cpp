#include "names.h"

#include <algorithm>
#include <numeric>
#include <sstream>
#include <utility>

namespace phctl {
namespace {

char lower(char character) {
    return character >= 'A' && character <= 'Z' ? static_cast<char>(character - 'A' + 'a') : character;
}

std::string lower(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return lower(c); });
    return result;
}

// Counts insertions, deletions and replacements between two texts (Levenshtein distance).
std::size_t distance(const std::string& left, const std::string& right) {
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= left.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i);
        for (std::size_t j = 1; j <= right.size(); ++j) {
            const std::size_t replaced = diagonal + (left[i - 1] == right[j - 1] ? 0 : 1);
            diagonal = std::exchange(row[j], std::min({row[j] + 1, row[j - 1] + 1, replaced}));
        }
    }
    return row.back();
}

} // namespace

std::string nearest(std::string_view name, const std::vector<std::string>& candidates) {
    constexpr std::size_t shortestPart = 3;
    const std::string wanted = lower(name);
    const std::string* best = nullptr;
    std::size_t bestDistance = std::max<std::size_t>(1, wanted.size() / 3);
    for (const std::string& candidate : candidates) {
        const std::string known = lower(candidate);
        // A name without its prefix, or an unfinished one, is nearer than a different one.
        const bool isPart =
            wanted.size() >= shortestPart && (known.starts_with(wanted) || known.ends_with(wanted));
        const std::size_t edits = isPart ? 1 : distance(wanted, known);
        if (edits > bestDistance ||
            (best != nullptr && edits == bestDistance && candidate.size() >= best->size()))
            continue;
        bestDistance = edits;
        best = &candidate;
    }
    return best != nullptr ? *best : "";
}

std::string didYouMean(std::string_view name, const std::vector<std::string>& candidates) {
    const std::string best = nearest(name, candidates);
    return best.empty() ? best : "; did you mean " + best + "?";
}

std::string joined(const std::vector<std::string>& names) {
    std::string text;
    for (const std::string& name : names)
        text += (text.empty() ? "" : ", ") + name;
    return text;
}

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream stream(text);
    for (std::string part; std::getline(stream, part, separator);)
        parts.push_back(part);
    return parts;
}

} // namespace phctl
