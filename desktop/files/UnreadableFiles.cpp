#include "desktop/files/UnreadableFiles.h"

namespace desktop {

namespace {

std::string counted(std::size_t count, const char* one)
{
    return count == 0 ? "" : std::to_string(count) + " " + one + (count == 1 ? "" : "s");
}

} // namespace

void UnreadableFiles::add(int error)
{
    ++m_count;
    m_error = error;
}

std::size_t UnreadableFiles::log(const Location& folder) const
{
    if (m_count > 0) {
        logUnreadable(folder, counted(m_count, "file") + ": " + describeError(m_error));
    }
    return m_count;
}

std::string describeUnreadable(std::size_t folders, std::size_t files)
{
    const std::string both = folders > 0 && files > 0 ? " and " : "";
    const std::string what = counted(folders, "folder") + both + counted(files, "file");
    return what.empty() ? "" : what + " cannot be read";
}

} // namespace desktop
