#include "desktop/formats/XspfPlaylist.h"

#include "desktop/formats/PlaylistText.h"
#include "desktop/text/AsciiText.h"
#include "desktop/text/LegacyText.h"
#include "desktop/text/UriText.h"
#include "desktop/text/Utf8.h"

#include <expat.h>

#include <memory>
#include <string_view>

namespace desktop {

namespace {

constexpr char kSeparator = '\n'; // between a namespace and a name, as the parser hands them over
constexpr std::string_view kNamespace = "http://xspf.org/ns/0/";
constexpr std::string_view kBase = "http://www.w3.org/XML/1998/namespace\nbase";
constexpr std::size_t kMaxText = 16UL * 1024; // bytes of a title or an address

// The element's name when it is of XSPF or of no namespace; else empty.
std::string_view xspfName(std::string_view element)
{
    const std::size_t end = element.find(kSeparator);
    if (end == std::string_view::npos) {
        return element;
    }
    return element.substr(0, end) == kNamespace ? element.substr(end + 1) : std::string_view();
}

/// The elements of a playlist as they are read.
class XspfReader {
public:
    PlaylistEntries entries;

    void begin(std::string_view element, const XML_Char** attributes)
    {
        ++m_depth;
        noteBase(attributes);
        const std::string_view name = xspfName(element);
        if (name == "track" && m_track == 0) {
            m_track = m_depth;
            m_location.clear();
            m_title.clear();
        }
        m_text = nullptr;
        if (m_track != 0 && m_depth == m_track + 1 && (name == "title" || name == "location")) {
            m_text = name == "title" ? &m_title : &m_found;
            m_text->clear();
        }
    }

    void gather(std::string_view text)
    {
        if (m_text != nullptr && m_text->size() < kMaxText) {
            m_text->append(text);
        }
    }

    void end()
    {
        if (m_text == &m_found && m_location.empty()) { // the first one is the best
            m_location = resolvedReference(base(), trimmed(m_found));
        }
        m_text = nullptr;
        if (m_depth == m_track) {
            m_track = 0;
            addEntry(entries, hasScheme(m_location) ? m_location : withoutEscapes(m_location), trimmed(m_title));
        }
        if (!m_bases.empty() && m_bases.back().depth == m_depth) {
            m_bases.pop_back();
        }
        --m_depth;
    }

private:
    struct Base {
        int depth; ///< of the element that has it
        std::string address;
    };

    std::string_view base() const { return m_bases.empty() ? std::string_view() : m_bases.back().address; }

    void noteBase(const XML_Char** attributes)
    {
        for (; *attributes != nullptr; attributes += 2) {
            std::string address = attributes[0] == kBase ? resolvedReference(base(), trimmed(attributes[1])) : "";
            if (!address.empty() && address.size() <= kMaxText) {
                m_bases.push_back({m_depth, std::move(address)});
            }
        }
    }

    int m_depth = 0;
    int m_track = 0; ///< depth of the current track; 0 outside
    std::vector<Base> m_bases;
    std::string m_found; ///< text of the current address
    std::string m_location;
    std::string m_title;
    std::string* m_text = nullptr; ///< where the text of the current element goes
};

void onBegin(void* reader, const XML_Char* element, const XML_Char** attributes)
{
    static_cast<XspfReader*>(reader)->begin(element, attributes);
}

void onText(void* reader, const XML_Char* text, int length)
{
    static_cast<XspfReader*>(reader)->gather({text, static_cast<std::size_t>(length)});
}

void onEnd(void* reader, const XML_Char* /*element*/)
{
    static_cast<XspfReader*>(reader)->end();
}

/// What comes before a fault is still good.
XML_Error parse(XML_Parser made, const std::string& text, PlaylistEntries& entries)
{
    const std::unique_ptr<XML_ParserStruct, decltype(&XML_ParserFree)> parser(made, &XML_ParserFree);
    XspfReader reader;
    XML_SetUserData(parser.get(), &reader);
    XML_SetElementHandler(parser.get(), &onBegin, &onEnd);
    XML_SetCharacterDataHandler(parser.get(), &onText);
    XML_Parse(parser.get(), text.data(), static_cast<int>(text.size()), XML_TRUE);
    entries = std::move(reader.entries);
    return XML_GetErrorCode(parser.get());
}

// The lines of @p text that are no UTF-8.
std::string legacyLines(const std::string& text)
{
    std::string lines;
    for (const std::string& line : linesOf(text)) {
        lines += isUtf8(line) ? "" : line + '\n';
    }
    return lines;
}

} // namespace

PlaylistEntries parseXspf(std::string content)
{
    std::string text = xmlText(std::move(content));
    if (!isUtf8(text)) {
        text = toUtf8(text, guessCharset(legacyLines(text)));
    }
    PlaylistEntries entries;
    const XML_Error error = parse(XML_ParserCreateNS("UTF-8", kSeparator), text, entries);
    if (error == XML_ERROR_UNBOUND_PREFIX) { // some programs write a prefix of theirs and never say what it means
        parse(XML_ParserCreate("UTF-8"), text, entries);
    }
    return entries;
}

} // namespace desktop
