#pragma once

#include "desktop/workers/MediaPlayer.h"

#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>

namespace testsupport {

/// A player that plays nothing: it records what it is asked for, and tells what a test wants.
class FakePlayer : public desktop::MediaPlayer {
public:
    /// @p place points to the player as long as it lives, unless another has taken it.
    FakePlayer(Handler handle, Gathered<std::string>& calls, std::atomic<FakePlayer*>& place)
        : m_handle(std::move(handle))
        , m_calls(calls)
        , m_place(place)
    {
        m_place = this;
    }
    ~FakePlayer() override
    {
        FakePlayer* self = this;
        m_place.compare_exchange_strong(self, nullptr);
    }
    FakePlayer(const FakePlayer&) = delete;
    FakePlayer& operator=(const FakePlayer&) = delete;

    void load(desktop::PlayerMedium medium) override
    {
        m_calls.add("load from " + text(medium.start) + " with " + std::to_string(medium.subtitles.size()) + " subtitles");
        m_loaded.add(std::make_shared<desktop::PlayerMedium>(std::move(medium)));
    }
    void unload() override { m_calls.add("unload"); }
    void pause(bool paused) override { m_calls.add(paused ? "pause" : "unpause"); }
    void wind(int speed) override { m_calls.add("wind " + std::to_string(speed)); }
    void seek(double seconds) override { m_calls.add("seek " + text(seconds)); }
    void setOptions(const desktop::PlayerOptions& options) override { m_options.add(options); }
    void takeFrame(int width, int height, FrameHandler handle) override
    {
        m_calls.add("frame");
        handle({width, height, std::make_shared<std::uint8_t>(std::uint8_t{1})});
    }

    /// The medium of the @p count th load, from 1 on.
    const desktop::PlayerMedium& loaded(std::size_t count)
    {
        const auto media = m_loaded.waitFor(count);
        if (media.size() < count) {
            throw std::runtime_error("nothing has been loaded");
        }
        return *media[count - 1];
    }
    std::size_t loads() { return m_loaded.sofar().size(); }
    /// The number of the medium that was loaded last; 0: none.
    std::uint64_t lastLoaded()
    {
        const auto media = m_loaded.sofar();
        return media.empty() ? 0 : media.back()->number;
    }
    std::vector<desktop::PlayerOptions> options() { return m_options.sofar(); }

    /// Tells @p told of the medium of the @p count th load; waits for it.
    void tell(std::size_t count, desktop::PlayerTold told) { m_handle({loaded(count).number, std::move(told)}); }
    /// Tells that key @p key of its window has been pressed.
    void press(const std::string& key) { m_handle({0, desktop::PlayerKey{key}}); }

private:
    static std::string text(double seconds) { return std::to_string(static_cast<int>(seconds)); }

    const Handler m_handle;
    Gathered<std::string>& m_calls;
    std::atomic<FakePlayer*>& m_place;
    Gathered<std::shared_ptr<desktop::PlayerMedium>> m_loaded;
    Gathered<desktop::PlayerOptions> m_options;
};

/// The fake players of one Playback, and what they have been asked for.
class FakePlayers {
public:
    /// The players of a Playback before are forgotten.
    desktop::PlayerFactory factory()
    {
        for (auto& player : m_players) {
            player = nullptr;
        }
        return [this](FileType kind, desktop::MediaPlayer::Handler handle) {
            return std::make_unique<FakePlayer>(std::move(handle), calls[slot(kind)], m_players[slot(kind)]);
        };
    }

    /// The player for @p kind; waits until it has been made. Safe on any thread, as made().
    FakePlayer& of(FileType kind)
    {
        if (!becomes([this, kind] { return made(kind); })) {
            throw std::runtime_error("there is no such player");
        }
        return *m_players[slot(kind)];
    }
    bool made(FileType kind) const { return m_players[slot(kind)] != nullptr; }
    FakePlayer& video() { return of(FILE_TYPE_VIDEO); }
    FakePlayer& music() { return of(FILE_TYPE_MUSIC); }
    FakePlayer& photo() { return of(FILE_TYPE_PHOTO); }
    std::vector<std::string> callsOf(FileType kind) { return calls[slot(kind)].sofar(); }

private:
    static std::size_t slot(FileType kind) { return static_cast<std::size_t>(kind) - FILE_TYPE_PHOTO; }

    std::array<Gathered<std::string>, 3> calls;
    std::array<std::atomic<FakePlayer*>, 3> m_players{};
};

} // namespace testsupport
