#pragma once

#include "desktop/files/PathResolver.h"

#include <cstddef>
#include <string>

namespace desktop {

/// Counts the files of one folder that cannot be looked at, so that a line of the log tells of all. Used on one thread.
class UnreadableFiles {
public:
    /// One more, because of errno value @p error.
    void add(int error);
    /// Logs how many there are in @p folder and why, if there are any. Returns how many.
    std::size_t log(const Location& folder) const;

private:
    std::size_t m_count = 0;
    int m_error = 0; ///< the latest reason
};

/// Says that so many folders and files cannot be read: "2 folders and 1 file cannot be read"; empty when there are none.
std::string describeUnreadable(std::size_t folders, std::size_t files);

} // namespace desktop
