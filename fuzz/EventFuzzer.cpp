#include "fuzz/Player.h"

// Events with parameters of any content, none of them asked for.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return playInput(data, size, "!=");
}
