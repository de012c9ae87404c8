#include "desktop/player/SubtitleFiles.h"

#include "desktop/player/MemoryFile.h"
#include "desktop/player/VobSub.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/Utf8.h"
#include "desktop/worker/FileSize.h"

#include <algorithm>
#include <string_view>

namespace desktop {

namespace {

constexpr std::int64_t kMaxText = 16 << 20;      // bytes
constexpr std::int64_t kMaxPictures = 128 << 20; // bytes

std::string contentOf(int fd)
{
    std::string content(static_cast<std::size_t>(std::max<std::int64_t>(fileSize(fd), 0)), '\0');
    const ssize_t got = TEMP_FAILURE_RETRY(pread(fd, content.data(), content.size(), 0));
    content.resize(static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
    return content;
}

struct Mark {
    std::string_view bytes;
    const char* charset;
};
// What texts in Unicode may begin with.
constexpr Mark kMarks[] = {{std::string_view("\xEF\xBB\xBF", 3), "UTF-8"},
                           {std::string_view("\xFF\xFE", 2), "UTF-16LE"},
                           {std::string_view("\xFE\xFF", 2), "UTF-16BE"}};

std::string inUtf8(const std::string& stored, const std::string& charset)
{
    for (const Mark& mark : kMarks) {
        if (stored.starts_with(mark.bytes)) {
            return toUtf8(stored.substr(mark.bytes.size()), mark.charset);
        }
    }
    if (!charset.empty()) {
        std::string text = toUtf8(stored, charset.c_str());
        if (!text.empty()) {
            return text;
        }
    }
    return isUtf8(stored) ? stored : toUtf8(stored, guessCharset(stored));
}

} // namespace

StoredSubtitle storeSubtitle(SubtitleFile file)
{
    StoredSubtitle stored = {std::move(file.name), std::move(file.language), {}, UniqueFd()};
    const UniqueFd copy = copyInMemory(file.fd.get(), kMaxText);
    if (copy) {
        stored.text = contentOf(copy.get());
    }
    if (file.pictures) {
        stored.pictures = copyInMemory(file.pictures.get(), kMaxPictures);
    }
    return stored;
}

UniqueFd playableSubtitle(const StoredSubtitle& subtitle, const std::string& charset)
{
    if (subtitle.text.empty()) {
        return UniqueFd();
    }
    if (subtitle.pictures) {
        return vobSubAsMatroska(subtitle.text, subtitle.pictures.get());
    }
    return memoryFile(inUtf8(subtitle.text, charset));
}

} // namespace desktop
