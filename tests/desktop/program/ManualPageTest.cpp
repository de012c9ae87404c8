#include "tests/desktop/support/Program.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <regex>
#include <set>
#include <sstream>

// The manual page against the program's own help.

namespace {

using testsupport::Program;
using Names = std::set<std::string>;

constexpr const char* kProgramItself = ""; // among the commands

std::string helpOf(const std::string& command)
{
    std::vector<std::string> words = {DESKTOP_TV};
    if (command != kProgramItself) {
        words.push_back(command);
    }
    words.emplace_back("--help");
    Program program(words);
    EXPECT_EQ(program.wait(), 0) << command;
    return program.output();
}

/// The lines of @p text from the one after @p heading to the next empty one.
std::vector<std::string> linesBelow(const std::string& heading, const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    bool inside = false;
    for (std::string line; std::getline(in, line);) {
        if (inside && line.empty()) {
            break;
        }
        if (inside) {
            lines.push_back(line);
        }
        inside = inside || line == heading;
    }
    return lines;
}

void addOptions(const std::string& line, Names& names)
{
    static const std::regex kOption("(^|[ ,\"])(--?[a-z][a-z-]*)");
    for (std::sregex_iterator match(line.begin(), line.end(), kOption), end; match != end; ++match) {
        names.insert((*match)[2]);
    }
}

/// What the help of @p command lists as its options; the text that explains them stands further right.
Names optionsInHelp(const std::string& command)
{
    Names names;
    for (const std::string& line : linesBelow("Options:", helpOf(command))) {
        if (line.rfind("  -", 0) == 0) {
            addOptions(line.substr(0, line.find_first_of(" ", 2)), names);
        }
    }
    names.erase("-h");
    names.erase("--help");
    return names;
}

Names commandsInHelp()
{
    Names names = {kProgramItself};
    for (const std::string& line : linesBelow("Subcommands:", helpOf(kProgramItself))) {
        names.insert(line.substr(2, line.find(' ', 2) - 2));
    }
    return names;
}

/// The options that the page explains, by command.
std::map<std::string, Names> optionsInPage()
{
    std::map<std::string, Names> options;
    std::string command = kProgramItself;
    bool isTerm = false;
    std::ifstream page(MAN_PAGE);
    for (std::string line; std::getline(page, line);) {
        line = std::regex_replace(line, std::regex(R"(\\-)"), "-");
        if (line.rfind(".SS ", 0) == 0) {
            command = line.substr(4, line.find(' ', 4) - 4);
        } else if (line.rfind(".SH ", 0) == 0) {
            command = kProgramItself;
        }
        Names& names = options[command];
        if (isTerm) {
            addOptions(line, names);
        }
        isTerm = line == ".TP";
    }
    options[kProgramItself].erase("-h");
    options[kProgramItself].erase("--help");
    return options;
}

TEST(ManualPage, Commands_AreThoseOfTheProgram)
{
    Names explained;
    for (const auto& [command, options] : optionsInPage()) {
        explained.insert(command);
    }
    EXPECT_GT(explained.size(), 5U);
    EXPECT_EQ(explained, commandsInHelp());
}

TEST(ManualPage, OptionsOfEachCommand_AreThoseOfTheProgram)
{
    std::map<std::string, Names> explained = optionsInPage();
    EXPECT_THAT(explained[kProgramItself], testing::Contains("--stick"));
    for (const std::string& command : commandsInHelp()) {
        EXPECT_EQ(explained[command], optionsInHelp(command)) << command;
    }
}

} // namespace
