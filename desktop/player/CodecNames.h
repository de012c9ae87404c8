#pragma once

struct AVCodecParameters;

#include <string>

namespace desktop {

/// What a stream is coded with, by the name that libavcodec has for it.
std::string codecName(const AVCodecParameters& stream);

/// Its profile as libavcodec names it; empty when the stream does not say.
std::string profileName(const AVCodecParameters& stream);

/// Its level as it is commonly written ("4.1"); empty when the stream does not say.
std::string levelName(const AVCodecParameters& stream);

} // namespace desktop
