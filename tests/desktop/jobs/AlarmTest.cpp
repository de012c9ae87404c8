#include "desktop/jobs/Alarm.h"

#include "tests/desktop/support/Waiting.h"

#include <gtest/gtest.h>

namespace desktop {
namespace {

using Clock = Alarm::Clock;

TEST(Alarm, TimeThatHasCome_RingsOnce)
{
    testsupport::Gathered<Clock::time_point> rings;
    Alarm alarm([&rings] {
        rings.add(Clock::now());
        return std::nullopt;
    });
    const auto time = Clock::now() + std::chrono::milliseconds(20);
    alarm.set(time);
    const auto rung = rings.waitFor(1);
    ASSERT_EQ(rung.size(), 1U);
    EXPECT_GE(rung[0], time);
    alarm.stop();
    EXPECT_EQ(rings.sofar().size(), 1U);
}

TEST(Alarm, EarlierTime_RingsBeforeALaterOne)
{
    testsupport::Gathered<int> rings;
    Alarm alarm([&rings] {
        rings.add(1);
        return std::nullopt;
    });
    alarm.set(Clock::now() + std::chrono::hours(1));
    alarm.set(Clock::now());
    EXPECT_EQ(rings.waitFor(1).size(), 1U);
}

TEST(Alarm, WhatRings_SaysWhenItRingsNext)
{
    testsupport::Gathered<int> rings;
    Alarm alarm([&rings, count = 0]() mutable {
        rings.add(++count);
        return count < 3 ? std::optional<Clock::time_point>(Clock::now()) : std::nullopt;
    });
    alarm.set(Clock::now());
    EXPECT_EQ(rings.waitFor(3).size(), 3U);
}

TEST(Alarm, Stopped_DoesNotRing)
{
    Alarm alarm([]() -> std::optional<Clock::time_point> {
        ADD_FAILURE();
        return std::nullopt;
    });
    alarm.set(Clock::now() + std::chrono::hours(1));
    alarm.stop();
    alarm.set(Clock::now());
}

} // namespace
} // namespace desktop
