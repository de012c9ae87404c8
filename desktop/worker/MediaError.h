#pragma once

#include <stdexcept>

namespace desktop {

/// Why a media file cannot be read; the text is for its user.
class MediaError : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace desktop
