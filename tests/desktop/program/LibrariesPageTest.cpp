#include "tests/desktop/support/Program.h"

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>

// The page of libraries against what the binaries link with.

namespace {

using Names = std::set<std::string>;

const Names kOfTheSystem = {"libc", "libm", "libstdc++", "libgcc_s", "ld-linux-x86-64", "libasan", "libubsan", "libtsan"};

Names linkedBy(const std::string& binary)
{
    testsupport::Program readelf({"readelf", "-d", binary});
    EXPECT_EQ(readelf.wait(), 0) << readelf.errors();
    static const std::regex kNeeded(R"(\(NEEDED\).*\[(.*)\.so[0-9.]*\])");
    const std::string output = readelf.output();
    Names names;
    for (std::sregex_iterator match(output.begin(), output.end(), kNeeded), end; match != end; ++match) {
        if (kOfTheSystem.count((*match)[1]) == 0) {
            names.insert((*match)[1]);
        }
    }
    return names;
}

/// The libraries in the first column of the table below @p heading.
Names listedBelow(const std::string& heading)
{
    static const std::regex kLibrary("lib[a-z0-9]+(-[0-9.]+)?");
    Names names;
    bool inside = false;
    std::ifstream page(LIBRARIES_PAGE);
    for (std::string line; std::getline(page, line);) {
        if (line.rfind("## ", 0) == 0) {
            inside = line == heading;
        } else if (inside && line.rfind("| lib", 0) == 0) {
            const std::string column = line.substr(0, line.find('|', 1));
            for (std::sregex_iterator match(column.begin(), column.end(), kLibrary), end; match != end; ++match) {
                names.insert(match->str());
            }
        }
    }
    return names;
}

TEST(LibrariesPage, Tables_AreWhatTheBinariesLinkWith)
{
    EXPECT_EQ(listedBelow("## The plugin"), linkedBy(PLUGIN_LIBRARY));
    EXPECT_EQ(listedBelow("## desktop-tv"), linkedBy(DESKTOP_TV));
    EXPECT_EQ(listedBelow("## desktop-media-worker"), linkedBy(MEDIA_WORKER));
    EXPECT_EQ(listedBelow("## desktop-media-player"), linkedBy(MEDIA_PLAYER));
}

} // namespace
