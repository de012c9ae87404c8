#include "fuzz/Player.h"

// Commands in any order, with requests of any shape and any answer of the platform.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return playInput(data, size, "0~=");
}
