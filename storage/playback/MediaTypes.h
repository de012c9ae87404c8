#pragma once

#include "platform/SocMwTypes.h"

namespace tvfirmware {

/// Whether a medium of @p type (a FileType) can be played and stepped through.
inline bool isPlayable(unsigned int type)
{
    return type == FILE_TYPE_PHOTO || type == FILE_TYPE_VIDEO || type == FILE_TYPE_MUSIC;
}

/// Whether a medium of @p type can be wound too: photos cannot.
inline bool isSeekable(unsigned int type)
{
    return type == FILE_TYPE_VIDEO || type == FILE_TYPE_MUSIC;
}

} // namespace tvfirmware
