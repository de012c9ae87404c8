#pragma once

#include "storage/CStorageMediaPlugin.h"

#include <array>
#include <map>

/// A command handler.
using Handler = bool (tvfirmware::CStorageMediaPlugin::*)(Json::Value* request, Json::Value* reply);

struct CommandRow {
    int index;        ///< the row's position
    const char* name; ///< protocol spelling, never corrected
    Handler handler;  ///< null in the last row, which stands for no command
};

constexpr std::size_t kCommandCount = 46;

// All of this is the library's own, whatever visibility it is built with: another plugin in the host's process may have the
// same names.
#pragma GCC visibility push(hidden)

/// The one table that dispatch, tests, fuzzers and the protocol reference walk.
extern const std::array<CommandRow, kCommandCount + 1> gCmdStringMap;

/// Hash of a command name to its row; empty until Plugin_Cmd_Hash_Gen has run, only read afterwards.
extern std::map<unsigned int, int> gCmdListIndexMap;

/// Fills gCmdListIndexMap. Of two names with one hash the lower row wins; running it again changes nothing.
void Plugin_Cmd_Hash_Gen();

#pragma GCC visibility pop
