#pragma once

#include <string>
#include <string_view>

namespace desktop {

/// The ISO 639 code, of two letters where there is one, of the language that @p text names in any case: a code ("en", "eng",
/// "ger"), a code with a country or a script ("pt-BR", "zh_Hans"), or the language's name in English or in itself
/// ("German", "Deutsch"). Empty when it names none. Safe on any thread.
std::string languageCode(std::string_view text);

} // namespace desktop
