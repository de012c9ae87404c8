#pragma once

#include <turbojpeg.h>

#include <memory>

namespace desktop {

struct DestroyTurboJpeg {
    void operator()(void* handle) const { tjDestroy(handle); }
};
using TurboJpeg = std::unique_ptr<void, DestroyTurboJpeg>;

} // namespace desktop
