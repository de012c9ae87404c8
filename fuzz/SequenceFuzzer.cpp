#include "fuzz/Player.h"

// Commands and events mixed, as they overtake each other, with the callback set and taken back between them.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    return playInput(data, size, "0~!=+-");
}
