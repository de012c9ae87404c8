#pragma once

#include <string>
#include <vector>

namespace desktop {

/// A subtitle file that belongs to a video, by its name. Names are bytes.
struct SubtitleFileName {
    std::string name;
    std::string language; ///< ISO 639 code by the name; may be empty
    std::string pictures; ///< the .sub file that belongs to an .idx file

    bool operator==(const SubtitleFileName& other) const = default;
};

/// Which of the @p names in a folder are subtitle files of video @p video beside them, 32 at most, the one to be shown
/// first: those named exactly like the video, those in @p language, an ISO 639 code that may be empty, the others, and at
/// the end those that are not the whole text ("forced", "signs", "songs", "commentary"), each in natural order. Such a name
/// is the video's, in any case and composed or decomposed, with a subtitle file's extension; languages and words as "forced"
/// may stand between ("film.srt", "film.pt-BR.srt", "Film.eng.forced.ass"). A .txt file must have the video's name alone,
/// and an .idx file counts only together with its .sub file, as one.
std::vector<SubtitleFileName> subtitleFilesOf(const std::string& video, const std::vector<std::string>& names,
                                              const std::string& language = "");

/// The language of the user's locale, as an ISO 639 code; empty when it has none.
std::string userLanguage();

} // namespace desktop
