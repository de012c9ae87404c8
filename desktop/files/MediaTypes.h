#pragma once

#include "platform/SocMwTypes.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace desktop {

/// How many bytes from a file's beginning typeByContent wants to see.
constexpr std::size_t kContentBytes = 512;

/// The extension of file @p name in lower case, without its dot; a leading dot begins none.
std::string extensionOf(std::string_view name);

/// The type that the extension of file @p name stands for, upper or lower case; FILE_TYPE_UNKNOWN when it has none, an
/// unknown one, or one that several kinds of files share.
FileType typeByExtension(std::string_view name);

/// The type that the first bytes of a file show; FILE_TYPE_OTHER when they are of no medium.
FileType typeByContent(std::string_view bytes);

/// Whether files of @p type are media, which hold metadata and can be played or shown.
bool isMedia(FileType type);

/// @p name without the extension that typeByExtension looks at; a leading dot begins no extension.
std::string_view nameWithoutExtension(std::string_view name);

} // namespace desktop
