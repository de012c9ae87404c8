// Plays the examples of docs/ui-flows.md to the shell: what comes back has the keys that the page shows.

#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Program.h"
#include "tests/support/TemporaryDirectory.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

namespace fs = std::filesystem;
using testsupport::Shell;

const std::string kStickOfThePage = "/media/stick";
const std::string kFence = "```";

/// One example of the page: its lines, each with its mark (">", "<" or "!") and a blank before the text.
struct Example {
    int line = 0; ///< where it begins
    std::vector<std::string> lines;
};

void PrintTo(const Example& example, std::ostream* out)
{
    *out << UI_FLOWS << ":" << example.line;
}

bool isMarked(const std::string& line)
{
    return line.size() > 2 && line[1] == ' ' && std::string("><!").find(line[0]) != std::string::npos;
}

std::vector<Example> readExamples()
{
    std::vector<Example> examples;
    std::ifstream page(UI_FLOWS);
    bool isInside = false;
    int number = 0;
    for (std::string line; std::getline(page, line);) {
        ++number;
        if (line == kFence) {
            isInside = !isInside;
            if (isInside) {
                examples.push_back({number, {}});
            }
        } else if (isInside && isMarked(line)) {
            examples.back().lines.push_back(line);
        }
    }
    if (examples.empty()) {
        throw std::runtime_error(std::string("no example in ") + UI_FLOWS);
    }
    return examples;
}

std::string replaceAll(std::string text, const std::string& from, const std::string& to)
{
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size()) {
        text.replace(at, from.size(), to);
    }
    return text;
}

/// The keys of @p value and of what it holds, with the types of their values; of a list those of its first entry.
std::string shapeOf(const Json::Value& value)
{
    if (value.isArray()) {
        return "[" + (value.empty() ? "" : shapeOf(value[0])) + "]";
    }
    if (value.isObject()) {
        std::string shape = "{";
        for (const std::string& key : value.getMemberNames()) {
            shape += key + ":" + shapeOf(value[key]) + " ";
        }
        return shape + "}";
    }
    return value.isString() ? "string" : value.isBool() ? "boolean" : value.isNull() ? "null" : "number";
}

/// Whether @p come is the line that the page shows as @p shown: the same command's reply, or notification of the same
/// request.
bool isSameLine(const Json::Value& come, const Json::Value& shown)
{
    return come["command"] == shown["command"] && come["notification"] == shown["notification"] &&
           come["body"]["reqId"] == shown["body"]["reqId"];
}

/// A copy of the demo stick as folder @p folder; its path.
std::string copyOfDemoStick(const std::string& folder)
{
    fs::copy(testsupport::demoFile(""), folder, fs::copy_options::recursive);
    return folder;
}

class UiFlow : public testing::TestWithParam<Example> {
protected:
    void TearDown() override
    {
        EXPECT_EQ(shell.program.wait(), 0);
        EXPECT_FALSE(HasFailure()) << "the shell's log:\n" << shell.program.errors();
    }

    void play(const std::string& line)
    {
        const std::string text = line.substr(2);
        if (line[0] == '>') {
            shell.sendLine(replaceAll(text, kStickOfThePage, stick));
        } else if (line[0] == '<') {
            expectLine(text);
        } else {
            pullOrPutBack(text);
        }
    }

    testsupport::TemporaryDirectory parent;
    const std::string stick = copyOfDemoStick(parent.path("stick")); // there before the shell starts

private:
    void expectLine(const std::string& text)
    {
        const Json::Value shown = testsupport::jsonLines(text).at(0);
        const Json::Value come = shell.next([&shown](const Json::Value& line) { return isSameLine(line, shown); });
        EXPECT_EQ(shapeOf(come), shapeOf(shown)) << text;
        EXPECT_EQ(come["result"], shown["result"]) << text;
        EXPECT_EQ(come["body"]["devcount"], shown["body"]["devcount"]) << text;
    }

    void pullOrPutBack(const std::string& text)
    {
        const std::string away = parent.path("away");
        ASSERT_TRUE(text == "the stick is pulled" || text == "the stick comes back") << text;
        text == "the stick is pulled" ? fs::rename(stick, away) : fs::rename(away, stick);
    }

    Shell shell{{"--stick", stick}};
};

TEST_P(UiFlow, PlayedToTheShell_BringsTheKeysThatThePageShows)
{
    for (const std::string& line : GetParam().lines) {
        SCOPED_TRACE(line);
        play(line);
        if (HasFatalFailure()) {
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Page, UiFlow, testing::ValuesIn(readExamples()),
                         [](const auto& example) { return "Line" + std::to_string(example.param.line); });

} // namespace
