#include "desktop/cli/Suggestion.h"

#include <algorithm>

namespace desktop {

namespace {

// How many letters must be put in, left out, replaced or swapped with the next to make one of the other.
std::size_t distance(std::string_view a, std::string_view b)
{
    std::vector<std::vector<std::size_t>> steps(a.size() + 1, std::vector<std::size_t>(b.size() + 1));
    for (std::size_t i = 0; i <= a.size(); ++i) {
        for (std::size_t j = 0; j <= b.size(); ++j) {
            if (i == 0 || j == 0) {
                steps[i][j] = i + j;
                continue;
            }
            const std::size_t replaced = steps[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0 : 1);
            steps[i][j] = std::min({steps[i - 1][j] + 1, steps[i][j - 1] + 1, replaced});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                steps[i][j] = std::min(steps[i][j], steps[i - 2][j - 2] + 1);
            }
        }
    }
    return steps[a.size()][b.size()];
}

} // namespace

std::string nearestName(std::string_view typed, const std::vector<std::string>& names)
{
    constexpr std::size_t kLongest = 100; // what is longer is no slip
    if (typed.empty() || typed.size() > kLongest) {
        return "";
    }
    const auto begins = [typed](const std::string& name) { return name.compare(0, typed.size(), typed) == 0; };
    if (std::count_if(names.begin(), names.end(), begins) == 1) {
        return *std::find_if(names.begin(), names.end(), begins);
    }
    std::string nearest;
    std::size_t least = 1 + typed.size() / 3;
    for (const std::string& name : names) {
        const std::size_t steps = distance(typed, name);
        if (steps < least) {
            least = steps;
            nearest = name;
        }
    }
    return nearest;
}

std::string suggestion(std::string_view typed, const std::vector<std::string>& names)
{
    const std::string nearest = nearestName(typed, names);
    return nearest.empty() ? "" : "; did you mean '" + nearest + "'?";
}

} // namespace desktop
