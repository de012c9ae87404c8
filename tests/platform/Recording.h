#pragma once

#include "platform/FakePlatform.h"
#include "support/TypedJson.h"

#include <string>
#include <type_traits>

// How the fake writes a call: name and arguments in order. Strings are quoted and unsigned numbers end in u; what is written
// back is shown with the value that it has before.

namespace recording {

inline std::string text(const std::string& argument)
{
    return '"' + argument + '"';
}

inline std::string text(bool argument)
{
    return argument ? "true" : "false";
}

inline std::string text(int argument)
{
    return std::to_string(argument);
}

inline std::string text(unsigned int argument)
{
    return std::to_string(argument) + "u";
}

inline std::string text(const Json::Value& argument)
{
    return testsupport::typed(argument);
}

template <typename T, std::enable_if_t<std::is_enum_v<T>, int> = 0>
std::string text(T argument)
{
    return std::to_string(static_cast<int>(argument));
}

template <typename T>
std::string text(const std::vector<T>& argument)
{
    return "[" + std::to_string(argument.size()) + " elements]";
}

/// Records that the platform fills: "fresh" while every field is as its constructor leaves it.
inline std::string text(const media_file_info_s& info)
{
    const bool fresh = info.path.empty() && info.type == 0 && info.title.empty() && info.year.empty() &&
                       info.duration == 0 && info.width == 0 && info.height == 0 &&
                       (info.music.artist + info.music.album + info.music.genre).empty();
    return fresh ? "fresh" : "not fresh";
}

inline std::string text(const browser_codec& codec)
{
    const std::string texts = codec.strTitle + codec.strVCodec + codec.strResolu + codec.strACodec + codec.strSubFormat +
                              codec.strAprofile + codec.strAlevels + codec.strMcodec + codec.strMfrequen + codec.strMbirate +
                              codec.strMaprofile + codec.strMalevels + codec.strPcodec + codec.strPresolu + codec.strPJepg;
    const bool numbersAreZero = codec.FrameRate == 0 && codec.Achannel == 0 && codec.Afrequen == 0 && codec.Abitrate == 0 &&
                                codec.culVideoCodec == 0 && codec.culAudioCodec == 0 && codec.Mchanel == 0;
    return texts.empty() && numbersAreZero ? "fresh" : "not fresh";
}

/// Records "@p operation(arguments)" and returns the status scripted for it.
template <typename... Arguments>
int call(const std::string& operation, const Arguments&... arguments)
{
    std::string list;
    ((list += (list.empty() ? "" : ", ") + text(arguments)), ...);
    FakePlatform& platform = FakePlatform::instance();
    platform.record(operation + "(" + list + ")");
    return platform.status(operation);
}

} // namespace recording
