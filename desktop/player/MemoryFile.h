#pragma once

#include "desktop/base/UniqueFd.h"

#include <cstdint>
#include <string_view>

namespace desktop {

/// A file in memory of these bytes; none when there is no room.
UniqueFd memoryFile(std::string_view bytes);

/// A copy in memory of the open file @p fd, which is at most @p most bytes large. None when it is larger or cannot be read;
/// errno says why then, EFBIG when it is too large.
UniqueFd copyInMemory(int fd, std::int64_t most);

} // namespace desktop
