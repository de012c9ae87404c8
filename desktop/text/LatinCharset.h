#pragma once

#include <string>

namespace desktop {

/// The charset among those of Latin letters that @p sample, texts of one origin, a line each, is most likely in:
/// Windows-1252, unless the texts are clearly a central European or the Turkish language in another one.
const char* guessLatinCharset(const std::string& sample);

} // namespace desktop
