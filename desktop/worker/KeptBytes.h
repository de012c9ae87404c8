#pragma once

#include <taglib/tbytevector.h>
#include <taglib/tstring.h>

#include <string>

namespace desktop {

// Tags that do not say their charset, or that say Latin whatever it is, go through the tag library with their bytes kept:
// the library's strings hold private characters in place of those beyond ASCII.

/// From now on the library keeps the bytes of ID3v1, of ID3v2's Latin texts and of RIFF's INFO.
void keepBytesOfTags();

/// The bytes @p data up to the first NUL, kept.
TagLib::String keepBytes(const TagLib::ByteVector& data);

/// @p tag as it is stored: its bytes when they were kept, else UTF-8.
std::string stored(const TagLib::String& tag);

} // namespace desktop
