#pragma once

namespace tvfirmware {

/// Hash of a command name, as the host computes it: h = h * 31 + byte over unsigned bytes, modulo 2^32.
constexpr unsigned int commandHash(const char* name)
{
    unsigned int hash = 0;
    for (; *name != '\0'; ++name) {
        hash = hash * 31U + static_cast<unsigned char>(*name);
    }
    return hash;
}

/// commandHash as an exported function.
unsigned int str2hashid(const char* s);

} // namespace tvfirmware
