#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace desktop {

/// The names of all commands, in the order of their numbers.
std::vector<std::string> commandNames();

/// What may stand at the end of a line that is being typed.
struct Completion {
    std::size_t begin = 0;          ///< where the word that is completed begins, in bytes
    std::vector<std::string> words; ///< each begins with what has been typed of it
    std::string end;                ///< what follows the word once it is complete
};

/// How the line that begins with @p typed may go on: plain words, or an object with a command's name and the keys of its
/// request.
Completion completionOf(std::string_view typed);

/// What all of @p words begin with.
std::string commonBeginning(const std::vector<std::string>& words);

} // namespace desktop
