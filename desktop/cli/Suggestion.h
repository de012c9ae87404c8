#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

/// The one of @p names that somebody who typed @p typed is likely to mean: few letters differ, or it begins like that and is
/// the only one. Empty when there is none.
std::string nearestName(std::string_view typed, const std::vector<std::string>& names);

/// "; did you mean 'NAME'?" of the nearest of @p names, or nothing.
std::string suggestion(std::string_view typed, const std::vector<std::string>& names);

} // namespace desktop
