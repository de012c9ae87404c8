#pragma once

#include <string>
#include <string_view>

namespace desktop {

/// Whether @p reference begins with a scheme and a host, as a web address does.
bool hasScheme(std::string_view reference);

/// @p uri with each %HH as the byte that it stands for, whatever it is.
std::string withoutEscapes(std::string_view uri);

/// What @p reference means in a document whose address is @p base; "." and ".." stay as they are. An empty base changes
/// nothing.
std::string resolvedReference(std::string_view base, std::string_view reference);

} // namespace desktop
