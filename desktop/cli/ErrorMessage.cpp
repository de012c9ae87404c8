#include "desktop/cli/ErrorMessage.h"

#include "desktop/cli/TextColumns.h"

#include <cstdio>
#include <system_error>

namespace desktop {

void printError(std::string_view message)
{
    std::fprintf(stderr, "desktop-tv: %s\n", visibleText(message).c_str());
}

std::string systemErrorText(int error)
{
    return std::generic_category().message(error);
}

} // namespace desktop
