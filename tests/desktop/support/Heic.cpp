#include "tests/desktop/support/Heic.h"

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <stdexcept>
#include <vector>

namespace testsupport {

namespace {

using namespace std::string_literals;

constexpr unsigned int kSide = 256; // of a tile

std::string number(std::size_t value, int bytes)
{
    std::string digits;
    for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) {
        digits += static_cast<char>(value >> shift);
    }
    return digits;
}

std::size_t numberAt(const std::string& bytes, std::size_t place)
{
    std::size_t value = 0;
    for (const char digit : bytes.substr(place, 4)) {
        value = (value << 8) | static_cast<unsigned char>(digit);
    }
    return value;
}

std::string box(const std::string& name, const std::string& content)
{
    return number(content.size() + 8, 4) + name + content;
}

/// A box that begins with its version.
std::string fullBox(const std::string& name, const std::string& content, char version = 0)
{
    return box(name, version + "\0\0\0"s + content);
}

struct CodedTiles {
    std::string settings; ///< the box with what the decoder has to know first
    std::vector<std::string> tiles;
};

/// The four fields, each coded for itself, out of a video of as many frames.
CodedTiles codeTiles()
{
    const TemporaryDirectory folder;
    writeFile(folder.path("fields.jpg"), fourFieldsJpeg(2 * kSide, 2 * kSide, 1));
    Program make({"ffmpeg", "-nostdin", "-v", "error", "-i", folder.path("fields.jpg"), "-vf", "untile=2x2", "-c:v",
                  "libx265", "-x265-params", "keyint=1:info=0:log-level=none", "-pix_fmt", "yuv420p", "-tag:v", "hvc1",
                  folder.path("tiles.mp4")});
    if (make.wait() != 0) {
        throw std::runtime_error("cannot code tiles: " + make.errors());
    }
    const std::string video = readFile(folder.path("tiles.mp4"));
    const std::size_t settings = video.find("hvcC") - 4;
    const std::size_t sizes = video.find("stsz") + 16; // past version, common size and count
    CodedTiles coded = {video.substr(settings, numberAt(video, settings)), {}};
    std::size_t tile = video.find("mdat") + 4;
    for (std::size_t i = 0; i < 4; ++i) {
        coded.tiles.push_back(video.substr(tile, numberAt(video, sizes + 4 * i)));
        tile += coded.tiles.back().size();
    }
    return coded;
}

std::string exif()
{
    const std::string orientation = "\x01\x12\0\x03\0\0\0\x01\0\x06\0\0"s;
    const std::string date = "\x01\x32\0\x02\0\0\0\x14\0\0\0\x26"s;
    return "\0\0\0\x06"s + "Exif\0\0"s + "MM\0*\0\0\0\x08\0\x02"s + orientation + date + "\0\0\0\0"s +
           "2024:05:01 12:00:02\0"s;
}

struct Item {
    std::string kind;
    std::string content;
    std::string properties; ///< numbers of boxes in the list of properties
    bool inside = false;    ///< the content stands in the description itself
};

/// What an item is to others.
std::string reference(const std::string& kind, std::size_t from, const std::vector<std::size_t>& to)
{
    std::string content = number(from, 2) + number(to.size(), 2);
    for (const std::size_t item : to) {
        content += number(item, 2);
    }
    return box(kind, content);
}

/// Where the items' contents are, which begin at @p data in the file.
std::string places(const std::vector<Item>& items, std::size_t data)
{
    std::string content = "\x44\0"s + number(items.size(), 2);
    for (std::size_t i = 0; i < items.size(); ++i) {
        const Item& item = items[i];
        content += number(i + 1, 2) + number(item.inside ? 1 : 0, 2) + number(0, 2) + number(1, 2) +
                   number(item.inside ? 0 : data, 4) + number(item.content.size(), 4);
        data += item.inside ? 0 : item.content.size();
    }
    return fullBox("iloc", content, 1);
}

std::string propertiesOf(const std::vector<Item>& items, const std::string& list)
{
    std::string users = number(items.size(), 4);
    for (std::size_t i = 0; i < items.size(); ++i) {
        users += number(i + 1, 2) + static_cast<char>(items[i].properties.size()) + items[i].properties;
    }
    return box("iprp", box("ipco", list) + fullBox("ipma", users));
}

std::string infos(const std::vector<Item>& items)
{
    std::string content = number(items.size(), 2);
    for (std::size_t i = 0; i < items.size(); ++i) {
        content += fullBox("infe", number(i + 1, 2) + number(0, 2) + items[i].kind + '\0', 2);
    }
    return fullBox("iinf", content);
}

} // namespace

std::string gridHeic(const HeicForm& form)
{
    static const CodedTiles coded = codeTiles();
    const std::string list = coded.settings + fullBox("ispe", number(kSide, 4) + number(kSide, 4)) +
                             fullBox("ispe", number(form.width, 4) + number(form.height, 4)) + box("imir", "\x01") +
                             box("irot", std::string(1, static_cast<char>(form.anticlockwise)));
    // Tiles of an own decoder's settings and size; the grid of another size, mirrored and turned.
    const bool lies = form.gridSide != 0;
    const std::string grid =
        "\0\x01\x01\x01"s + number(lies ? form.gridSide : form.width, 4) + number(lies ? form.gridSide : form.height, 4);
    std::vector<Item> items = {{"grid", grid, form.mirrored ? "\x03\x04\x05" : "\x03\x05", true}};
    for (const std::string& tile : coded.tiles) {
        items.push_back({"hvc1", tile, "\x01\x02"});
    }
    items.push_back({"Exif", exif(), ""});
    std::string references = reference("dimg", 1, {2, 3, 4, 5}) + reference("cdsc", 6, {1});
    if (form.smaller) {
        items.push_back({"hvc1", coded.tiles.back(), "\x01\x02"});
        references += reference("thmb", 7, {1});
    }
    if (!form.xmp.empty()) {
        items.push_back({"mime\0\0application/rdf+xml"s, form.xmp, ""});
        references += reference("cdsc", items.size(), {1});
    }
    const std::string head = box("ftyp", "heic\0\0\0\0mif1heic"s);
    const auto description = [&](std::size_t data) {
        return fullBox("meta", fullBox("hdlr", number(0, 4) + "pict" + std::string(13, '\0')) +
                                   fullBox("pitm", number(1, 2)) + infos(items) + fullBox("iref", references) +
                                   propertiesOf(items, list) + box("idat", grid) + places(items, data));
    };
    std::string contents;
    for (const Item& item : items) {
        contents += item.inside ? "" : item.content;
    }
    const std::size_t data = head.size() + description(0).size() + 8;
    return head + description(data) + box("mdat", contents);
}

} // namespace testsupport
