// What plays is lost at random moments, again and again: the stick is pulled, or the player's process killed. FAULT_ROUNDS
// chooses how often, FAULT_SEED another order.

#include "desktop/metadata/PlayPositions.h"

#include "tests/desktop/support/DemoStick.h"
#include "tests/desktop/support/Setting.h"
#include "tests/desktop/support/Waiting.h"
#include "tests/support/TemporaryDirectory.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <map>
#include <random>
#include <set>

namespace {

namespace fs = std::filesystem;
using testsupport::demoFile;
using testsupport::setting;
using testsupport::Shell;

constexpr int kPhoto = 3;
constexpr int kVideo = 4;
constexpr int kMusic = 5;
constexpr unsigned int kFewRounds = 12;

/// What a process holds.
struct Holdings {
    std::size_t descriptors = 0;
    std::size_t threads = 0;
    std::size_t children = 0;

    bool operator==(const Holdings& other) const = default;
};

std::size_t entriesIn(const fs::path& folder)
{
    std::error_code gone;
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder, gone), fs::directory_iterator()));
}

std::vector<pid_t> childrenOf(pid_t pid)
{
    std::vector<pid_t> children;
    std::error_code gone;
    for (const auto& thread : fs::directory_iterator("/proc/" + std::to_string(pid) + "/task", gone)) {
        std::ifstream list(thread.path() / "children");
        for (pid_t child = 0; list >> child;) {
            children.push_back(child);
        }
    }
    return children;
}

std::string programOf(pid_t pid)
{
    std::string name;
    std::getline(std::ifstream("/proc/" + std::to_string(pid) + "/comm"), name);
    return name;
}

Holdings holdingsOf(pid_t pid)
{
    const std::string process = "/proc/" + std::to_string(pid);
    return {entriesIn(process + "/fd"), entriesIn(process + "/task"), childrenOf(pid).size()};
}

class PlayFaults : public testing::Test {
protected:
    PlayFaults()
    {
        m_parent.makeDirectory("usb");
        for (const std::string name : {"Films", "Music", "Photos"}) {
            fs::copy(demoFile(name), m_stick + "/" + name, fs::copy_options::recursive);
        }
    }

    unsigned int below(unsigned int count) { return static_cast<unsigned int>(m_random() % count); }

    Json::Value command(const std::string& name, const Json::Value& request)
    {
        m_shell.send("storagemedia." + name, request);
        return m_shell.reply();
    }

    static Json::Value ofType(int type)
    {
        Json::Value request;
        request["type"] = type;
        return request;
    }

    Json::Value playRequest(int type)
    {
        static const std::map<int, std::string> kFolders = {
            {kVideo, "Films"}, {kMusic, "Music/The Sines"}, {kPhoto, "Photos/2024"}};
        Json::Value request = ofType(type);
        request["dirpath"] = m_stick + "/" + kFolders.at(type);
        request["index"] = 0;
        request["playall"] = true;
        request["resume"] = true;
        return request;
    }

    Json::Value waitForOneOf(const std::set<std::string>& names)
    {
        return m_shell.next([&names](const Json::Value& line) {
            const std::string name = line["notification"].asString();
            return name.size() > 13 && names.count(name.substr(13)) > 0;
        });
    }

    // Begins to play, and stops watching at a random moment of it.
    void playForAWhile(int type)
    {
        ASSERT_EQ(command("media.playfile", playRequest(type))["result"], true);
        m_plays = true;
        if (below(4) == 0) {
            return; // while it is loaded
        }
        ASSERT_FALSE(waitForOneOf({"media.loadsuccess", "media.photo.loadsuccess"}).isNull());
        if (type == kPhoto || below(4) == 0) {
            return;
        }
        if (below(2) == 0) {
            const std::string wind = below(2) == 0 ? "button.fastforward" : "button.fastrewind";
            for (unsigned int press = 0; press < 1 + below(4); ++press) {
                command(wind, ofType(type));
            }
        }
        for (unsigned int second = below(3); second > 0 && m_plays; --second) {
            const Json::Value told = waitForOneOf({"media.process", "video.music.playend"});
            ASSERT_FALSE(told.isNull());
            m_plays = told["notification"] == "storagemedia.media.process";
        }
    }

    // Returns how long it took to be told. What played may just have come to its end by itself.
    std::chrono::milliseconds pull()
    {
        const auto begin = std::chrono::steady_clock::now();
        fs::rename(m_stick, m_stick + ".away");
        bool ended = !m_plays;
        bool removed = false;
        auto took = begin - begin;
        while (!ended || !removed) {
            const Json::Value told = waitForOneOf(
                {"media.playfailed", "media.loadfailed", "video.music.playend", "photo.playend", "usb.unmount"});
            if (told.isNull()) {
                ADD_FAILURE() << "ended: " << ended << ", removed: " << removed;
                break;
            }
            const bool isRemoval = told["notification"] == "storagemedia.usb.unmount";
            (isRemoval ? removed : ended) = true;
            took = std::chrono::steady_clock::now() - begin;
        }
        return std::chrono::duration_cast<std::chrono::milliseconds>(took);
    }

    // In the middle of its film: a place that is worth returning to.
    bool noteFirstPlace() const
    {
        constexpr double kHalfAMinute = 30;
        desktop::PlayPositions(m_cache.path()).note({m_stick, "./Films/Half a minute.mp4"}, kHalfAMinute / 3, kHalfAMinute);
        return true;
    }

    // Of the film that a pull has ended: its position is the one that was told last, unless that is not worth returning to.
    void expectKeptPosition()
    {
        std::string film;
        double duration = 0;
        double told = -1; // the whole seconds of it; none yet
        bool cutOff = false;
        for (const Json::Value& line : m_shell.lines()) {
            const std::string name = line["notification"].asString();
            const Json::Value& body = line["body"];
            if (name == "storagemedia.media.loadsuccess") {
                film = body["type"] == kVideo ? body["path"].asString() : "";
                duration = body["duration"].asDouble();
                told = -1;
            } else if (name == "storagemedia.media.process") {
                told = body["time"].asDouble();
            }
            cutOff = name == "storagemedia.media.playfailed" || (cutOff && name.rfind("storagemedia.usb.", 0) == 0);
        }
        const double margin = 5;
        if (!cutOff || film.empty() || told < 0) {
            return;
        }
        EXPECT_TRUE(testsupport::becomes([&] {
            const auto kept = desktop::PlayPositions(m_cache.path()).find({m_stick, "." + film.substr(m_stick.size())});
            const bool mayBeKept = told + 1 > margin && told <= duration - margin;
            const bool mayBeForgotten = told < margin || told + 1 > duration - margin;
            return kept ? mayBeKept && std::floor(*kept) == told : mayBeForgotten;
        })) << film
            << " at " << told;
    }

    void putBack()
    {
        fs::rename(m_stick + ".away", m_stick);
        const Json::Value there = m_shell.next([](const Json::Value& line) {
            return line["notification"] == "storagemedia.usb.mount" && line["body"]["devcount"] == 1;
        });
        EXPECT_FALSE(there.isNull());
    }

    // All of them: which one plays cannot be seen from here.
    void killPlayers()
    {
        for (const pid_t child : childrenOf(m_shell.program.pid())) {
            if (programOf(child).rfind("desktop-media-p", 0) == 0) {
                kill(child, SIGKILL);
            }
        }
    }

    // Waits until nothing plays and all that played has been let go.
    bool holdsAgain(const Holdings& before)
    {
        const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        Holdings now = holdingsOf(m_shell.program.pid());
        while (now.descriptors > before.descriptors || now.threads > before.threads || now.children > before.children) {
            if (std::chrono::steady_clock::now() > deadline) {
                ADD_FAILURE() << now.descriptors << " descriptors, " << now.threads << " threads, " << now.children
                              << " children; before: " << before.descriptors << ", " << before.threads << ", "
                              << before.children;
                return false;
            }
            command("get.play.mode", Json::Value(Json::objectValue));
            now = holdingsOf(m_shell.program.pid());
        }
        return true;
    }

    // Plays each kind once, so that whatever is made once has been made.
    Holdings warmUp()
    {
        for (const int type : {kVideo, kPhoto, kMusic}) {
            command("media.playfile", playRequest(type));
            EXPECT_FALSE(waitForOneOf({"media.loadsuccess", "media.photo.loadsuccess"}).isNull());
            command("media.stopfile", ofType(type));
        }
        return holdingsOf(m_shell.program.pid());
    }

    void end() { EXPECT_EQ(m_shell.program.wait(), 0) << m_shell.program.errors(); }

    const unsigned int m_rounds = setting("FAULT_ROUNDS", kFewRounds);
    const unsigned int m_seed = setting("FAULT_SEED", 1);
    std::minstd_rand m_random{m_seed};
    testsupport::TemporaryDirectory m_parent;
    testsupport::TemporaryDirectory m_cache;
    const std::string m_stick = m_parent.path("usb");
    bool m_plays = false;                     ///< as far as is known
    const bool m_hasPlace = noteFirstPlace(); ///< before the program reads it
    Shell m_shell{{"--stick", m_stick, "--cache", m_cache.path(), "--log-level", "off"}};
};

TEST_F(PlayFaults, PulledStick_IsToldEachTimeAndNothingIsLeftBehind)
{
    const Holdings before = warmUp();
    std::vector<std::chrono::milliseconds> took;
    for (unsigned int round = 0; round < m_rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round) + " of FAULT_SEED=" + std::to_string(m_seed));
        constexpr int kKinds[] = {kVideo, kMusic, kPhoto};
        playForAWhile(kKinds[below(3)]);
        took.push_back(pull());
        expectKeptPosition();
        putBack();
    }
    ASSERT_FALSE(took.empty());
    std::sort(took.begin(), took.end());
    EXPECT_LT(took.back(), std::chrono::seconds(1));
    RecordProperty("longest_ms", static_cast<int>(took.back().count()));
    std::printf("told within %ld ms, half of them within %ld ms\n", static_cast<long>(took.back().count()),
                static_cast<long>(took[took.size() / 2].count()));
    EXPECT_TRUE(holdsAgain(before));
    end();
}

TEST_F(PlayFaults, KilledPlayer_IsToldEachTimeAndTheNextPlayWorks)
{
    const Holdings before = warmUp();
    for (unsigned int round = 0; round < m_rounds && !HasFailure(); ++round) {
        SCOPED_TRACE("round " + std::to_string(round) + " of FAULT_SEED=" + std::to_string(m_seed));
        const int type = below(2) == 0 ? kVideo : kMusic;
        command("media.playfile", playRequest(type));
        ASSERT_FALSE(waitForOneOf({"media.loadsuccess"}).isNull());
        for (unsigned int second = 0; second < below(2); ++second) {
            waitForOneOf({"media.process"});
        }
        killPlayers();
        ASSERT_FALSE(waitForOneOf({"media.playfailed"}).isNull());
    }
    warmUp();
    EXPECT_TRUE(holdsAgain(before));
    end();
}

} // namespace
