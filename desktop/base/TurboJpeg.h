#pragma once

#include <turbojpeg.h>

#include <memory>

namespace desktop {

struct DestroyTurboJpeg {
    void operator()(void* handle) const { tjDestroy(handle); }
};
using TurboJpeg = std::unique_ptr<void, DestroyTurboJpeg>;

struct FreeTurboBytes {
    void operator()(unsigned char* bytes) const { tjFree(bytes); }
};
using TurboBytes = std::unique_ptr<unsigned char, FreeTurboBytes>;

} // namespace desktop
