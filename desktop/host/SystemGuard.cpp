#include "desktop/host/PrivateDirectories.h"

#include "desktop/base/Log.h"

#include <dlfcn.h>

#include <cstdlib>

// The plugin clears and makes its fixed directories by shell commands. Its calls of system() end here, as the program's own
// symbols come first; without private directories none is run, so that nothing on the computer itself is touched.
extern "C" int system(const char* command)
{
    if (!desktop::directoriesArePrivate()) {
        desktop::logLine(desktop::LogLevel::Warning, std::string("not run on this computer: ") + command);
        return EXIT_FAILURE;
    }
    const auto real = reinterpret_cast<int (*)(const char*)>(dlsym(RTLD_NEXT, "system"));
    return real(command);
}
