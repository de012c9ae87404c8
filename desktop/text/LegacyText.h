#pragma once

#include <string>

namespace desktop {

// Tags and playlists from before UTF-8 do not say which charset they are in. A wrong guess is worse than none: whatever one
// western European language could have written is left to Windows-1252, as which most such texts are meant.

/// The charset of @p texts, those of one origin, a line each, that are not UTF-8; the more the better, up to 64 KiB.
/// Windows-1252 when nothing speaks clearly for another one.
const char* guessCharset(const std::string& texts);

/// The text in UTF-8 that @p bytes stand for in @p charset; empty when the charset is unknown. Bytes that stand for nothing
/// there become U+FFFD.
std::string toUtf8(const std::string& bytes, const char* charset);

} // namespace desktop
