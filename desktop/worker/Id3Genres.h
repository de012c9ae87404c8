#pragma once

#include <string>
#include <vector>

namespace desktop {

/// The genres that @p value, one value of ID3v2's genre frame, names: texts; numbers of ID3v1's list, RX (remix) and CR
/// (cover), each alone or in brackets; and several in brackets one after another, with a text behind them. A text that
/// begins with a bracket has two.
std::vector<std::string> genresOfId3(const std::string& value);

} // namespace desktop
