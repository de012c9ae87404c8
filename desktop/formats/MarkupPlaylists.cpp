#include "desktop/formats/MarkupPlaylists.h"

#include "desktop/formats/PlaylistText.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/UriText.h"

#include <unicode/utf8.h>

#include <algorithm>
#include <charconv>
#include <map>
#include <string_view>

namespace desktop {

namespace {

constexpr std::string_view kBlanks = " \t\r\n";

/// A tag, and the text that stands before it.
struct Tag {
    std::string name;                              ///< in lower case; with its "/" when it ends an element
    std::map<std::string, std::string> attributes; ///< names in lower case
    std::string textBefore;

    std::string attribute(const std::string& key) const
    {
        const auto found = attributes.find(key);
        return found != attributes.end() ? found->second : "";
    }
};

std::string characterOf(std::string_view digits)
{
    const bool hexadecimal = digits.starts_with('x') || digits.starts_with('X');
    digits.remove_prefix(hexadecimal ? 1 : 0);
    UChar32 value = 0;
    const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), value, hexadecimal ? 16 : 10);
    if (digits.empty() || read.ptr != digits.end() || value <= 0 || !U_IS_UNICODE_CHAR(value)) {
        return "";
    }
    char bytes[U8_MAX_LENGTH];
    int length = 0;
    U8_APPEND_UNSAFE(bytes, length, value);
    return {bytes, static_cast<std::size_t>(length)};
}

// What the entity @p name, without its "&" and ";", stands for; empty when it is none.
std::string meaningOf(std::string_view name)
{
    struct Entity {
        std::string_view name;
        const char* meaning;
    };
    constexpr Entity kEntities[] = {{"amp", "&"}, {"lt", "<"}, {"gt", ">"}, {"quot", "\""}, {"apos", "'"}};
    for (const Entity& entity : kEntities) {
        if (entity.name == name) {
            return entity.meaning;
        }
    }
    return name.starts_with('#') ? characterOf(name.substr(1)) : "";
}

std::string withoutEntities(std::string_view text)
{
    constexpr std::size_t kLongest = 10; // "&#x10FFFF;"
    std::string plain;
    while (!text.empty()) {
        const std::size_t end = text.front() == '&' ? text.substr(0, kLongest).find(';') : std::string_view::npos;
        const std::string meaning = end != std::string_view::npos ? meaningOf(text.substr(1, end - 1)) : "";
        plain += meaning.empty() ? std::string(1, text.front()) : meaning;
        text.remove_prefix(meaning.empty() ? 1 : end + 1);
    }
    return plain;
}

/// Reads tags one after another, whatever state the markup is in.
class TagReader {
public:
    explicit TagReader(std::string_view text)
        : m_text(text)
    {
    }

    /// False at the end of the text.
    bool next(Tag& tag)
    {
        tag = Tag();
        for (;;) {
            const std::size_t open = m_text.find('<');
            if (open == std::string_view::npos) {
                return false;
            }
            tag.textBefore += withoutEntities(m_text.substr(0, open));
            m_text.remove_prefix(open + 1);
            if (m_text.starts_with("!--")) {
                skipComment();
            } else if (beginsTag()) {
                break;
            } else {
                tag.textBefore += '<';
            }
        }
        tag.name = lowerCase(take(" \t\r\n>"));
        while (readAttribute(tag)) {
        }
        return true;
    }

private:
    bool beginsTag() const
    {
        const std::string first = lowerCase(m_text.substr(0, 1));
        return !first.empty() && ((first[0] >= 'a' && first[0] <= 'z') || first.find_first_of("/?!") == 0);
    }

    // One that does not end goes on to the end of the text.
    void skipComment()
    {
        constexpr std::string_view kEnd = "-->";
        const std::size_t end = m_text.find(kEnd);
        m_text.remove_prefix(end != std::string_view::npos ? end + kEnd.size() : m_text.size());
    }

    // Takes what stands before one of @p ends.
    std::string_view take(std::string_view ends)
    {
        const std::string_view taken = m_text.substr(0, m_text.find_first_of(ends));
        m_text.remove_prefix(taken.size());
        return taken;
    }

    void skipBlanks() { m_text.remove_prefix(std::min(m_text.find_first_not_of(kBlanks), m_text.size())); }

    // False at the end of the tag.
    bool readAttribute(Tag& tag)
    {
        skipBlanks();
        if (m_text.empty() || m_text.front() == '>') {
            m_text.remove_prefix(m_text.empty() ? 0 : 1);
            return false;
        }
        const std::string name = lowerCase(take(" \t\r\n>="));
        skipBlanks();
        if (m_text.starts_with('=')) {
            m_text.remove_prefix(1);
            skipBlanks();
            tag.attributes.emplace(name, withoutEntities(takeValue()));
        }
        return true;
    }

    std::string_view takeValue()
    {
        const bool quoted = m_text.starts_with('"') || m_text.starts_with('\'');
        if (quoted && m_text.find(m_text.front(), 1) != std::string_view::npos) {
            const char quote = m_text.front();
            m_text.remove_prefix(1);
            const std::string_view value = take({&quote, 1});
            m_text.remove_prefix(1);
            return value;
        }
        std::string_view value = take(" \t\r\n>");
        if (m_text.starts_with('>') && value.ends_with('/')) { // the end of the element, not of the value
            value.remove_suffix(1);
        }
        return value;
    }

    std::string_view m_text;
};

/// The entry of an ASX metafile that is being read.
struct AsxEntry {
    bool open = false;
    std::string target;
    std::string title;
};

} // namespace

PlaylistEntries parseAsx(std::string content)
{
    const std::string text = xmlText(std::move(content));
    PlaylistEntries entries;
    TagReader tags(text);
    std::string base;
    AsxEntry entry;
    for (Tag tag; tags.next(tag);) {
        if (tag.name == "entry") {
            entry = {true, "", ""};
        } else if (tag.name == "base") {
            base = tag.attribute("href");
        } else if (tag.name == "ref" && entry.open && entry.target.empty()) { // the others are in case that it fails
            entry.target = resolvedReference(base, trimmed(tag.attribute("href")));
        } else if (tag.name == "/title") {
            entry.title = trimmed(tag.textBefore);
        } else if (tag.name == "/entry" && entry.open) {
            addEntry(entries, entry.target, entry.title);
            entry = {};
        }
    }
    return entries;
}

PlaylistEntries parseWpl(std::string content)
{
    const std::string text = xmlText(std::move(content));
    PlaylistEntries entries;
    TagReader tags(text);
    for (Tag tag; tags.next(tag);) {
        if (tag.name == "media") {
            addEntry(entries, trimmed(tag.attribute("src")), "");
        }
    }
    return entries;
}

} // namespace desktop
