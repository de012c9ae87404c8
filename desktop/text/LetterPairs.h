#pragma once

#include <cstddef>

namespace desktop {

/// Languages of Latin letters by the charsets of old that they were written in.
enum class LatinGroup { Western, Central, Turkish };

/// Which letters a language has, and how rare it is that one follows another.
struct LetterPairs {
    LatinGroup group;
    const char32_t* letters; ///< in lower case, besides a to z
    /// For each pair of symbols a hexadecimal digit, bits: that the second one follows the first. The symbols are the end of
    /// a word, a to z, and the letters.
    const char* bits;
};

constexpr std::size_t kLatinLanguages = 17;
extern const LetterPairs kLetterPairs[kLatinLanguages];

} // namespace desktop
