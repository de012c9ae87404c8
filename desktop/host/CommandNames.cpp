#include "desktop/host/CommandNames.h"

#include "protocol/ProtocolTable.h"

#include <algorithm>

namespace desktop {

bool isCommandName(std::string_view name)
{
    return std::any_of(protocol::kCommands.begin(), protocol::kCommands.end(),
                       [name](const auto& command) { return command.name == name; });
}

} // namespace desktop
