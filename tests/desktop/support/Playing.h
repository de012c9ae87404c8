#pragma once

#include "desktop/workers/PlayerProcess.h"

#include "tests/desktop/support/Jpeg.h"
#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

#include <fcntl.h>

#include <algorithm>
#include <optional>

namespace testsupport {

/// A player, and what it tells, in the hands of a test.
class Playing {
public:
    explicit Playing(desktop::PlayerSettings settings = usual())
        : player(std::move(settings), [this](desktop::PlayerEvent event) { m_events.add(std::move(event)); })
    {
    }

    static desktop::PlayerSettings usual()
    {
        desktop::PlayerSettings settings;
        settings.program = MEDIA_PLAYER;
        return settings;
    }

    static desktop::PlayerMedium medium(const std::string& file, FileType type)
    {
        desktop::PlayerMedium medium;
        medium.number = ++s_last;
        medium.type = type;
        medium.fd = desktop::UniqueFd(open(file.c_str(), O_RDONLY | O_CLOEXEC));
        EXPECT_TRUE(medium.fd) << file;
        return medium;
    }

    /// Loads @p medium and waits until it plays; its facts. Nothing when it ends instead.
    std::optional<desktop::MediaFacts> load(desktop::PlayerMedium medium)
    {
        const std::uint64_t number = medium.number;
        player.load(std::move(medium));
        const auto told = waitFor(number, [](const desktop::PlayerTold& event) {
            return std::holds_alternative<desktop::PlayerLoaded>(event) ||
                   std::holds_alternative<desktop::PlayerEnded>(event);
        });
        const auto* const loaded = told ? std::get_if<desktop::PlayerLoaded>(&*told) : nullptr;
        return loaded != nullptr ? std::optional(loaded->facts) : std::nullopt;
    }
    std::optional<desktop::MediaFacts> load(const std::string& file, FileType type) { return load(medium(file, type)); }

    /// The first event of kind @p Told of the medium that was made last, told already or before the deadline.
    template <typename Told>
    std::optional<Told> wait(const std::function<bool(const Told&)>& fits = [](const Told&) { return true; })
    {
        const auto told = waitFor(s_last, [&fits](const desktop::PlayerTold& event) {
            const auto* const wanted = std::get_if<Told>(&event);
            return wanted != nullptr && fits(*wanted);
        });
        return told ? std::optional(std::get<Told>(*told)) : std::nullopt;
    }
    std::optional<desktop::PlayerEnded> end() { return wait<desktop::PlayerEnded>(); }

    /// All events of kind @p Told so far, of every medium.
    template <typename Told>
    std::vector<Told> all()
    {
        std::vector<Told> found;
        for (const desktop::PlayerEvent& event : m_events.sofar()) {
            if (const auto* const told = std::get_if<Told>(&event.told)) {
                found.push_back(*told);
            }
        }
        return found;
    }
    std::vector<desktop::PlayerEvent> events() { return m_events.sofar(); }
    void forget() { m_events.clear(); }

    /// What is shown; no picture when there is none.
    Picture frame(int width = 320, int height = 180)
    {
        Gathered<desktop::ScreenFrame> frames;
        player.takeFrame(width, height, [&frames](desktop::ScreenFrame taken) { frames.add(std::move(taken)); });
        const std::vector<desktop::ScreenFrame> taken = frames.waitFor(1);
        Picture picture;
        if (taken.empty() || taken.front().pixels == nullptr) {
            return picture;
        }
        picture.width = taken.front().width;
        picture.height = taken.front().height;
        const std::uint8_t* const pixels = taken.front().pixels.get();
        for (int i = 0; i < width * height; ++i) {
            picture.rgb.insert(picture.rgb.end(), pixels + std::ptrdiff_t{4} * i, pixels + std::ptrdiff_t{4} * i + 3);
        }
        return picture;
    }

private:
    std::optional<desktop::PlayerTold> waitFor(std::uint64_t number,
                                               const std::function<bool(const desktop::PlayerTold&)>& fits)
    {
        std::optional<desktop::PlayerTold> told;
        m_events.waitUntil([&](const std::vector<desktop::PlayerEvent>& events) {
            const auto found = std::find_if(events.begin(), events.end(), [&](const desktop::PlayerEvent& event) {
                return event.medium == number && fits(event.told);
            });
            if (found != events.end()) {
                told = found->told;
            }
            return told.has_value();
        });
        return told;
    }

    static inline std::atomic<std::uint64_t> s_last{0};
    Gathered<desktop::PlayerEvent> m_events;

public:
    desktop::PlayerProcess player;
};

} // namespace testsupport
