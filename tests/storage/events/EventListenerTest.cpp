#include "support/Scenario.h"
#include "support/TypedJson.h"

#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

#include <climits>

namespace {

using testsupport::parsed;
using tvfirmware::CStorageMediaPlugin;

/// Every id from 0 to 52, by what comes of it when the middleware sends no parameter.
struct EventWithoutParameter {
    int id;
    Journal journal; ///< after the frame's own line
};

Journal dropped(const std::string& message)
{
    return {dbg(message)};
}

Journal unknown(int id)
{
    return {war("Unknown event id:" + std::to_string(id))};
}

std::vector<EventWithoutParameter> everyEvent()
{
    std::vector<EventWithoutParameter> events = {
        {0, {dbg("Device Plugin!!!")}},
        {1,
         {dbg("<===============SOCMW_MM_EVENT_USB_DEVICE_MOUNT==============>"), did("system manager"),
          did("getScreenStatus(0)"), broadcast("storagemedia.usb.plugin", "null")}},
        {2, {}},
        {3, {}},
        {4, dropped("Pointer is NULL!!!")},
        {5, dropped("SOCMW_MM_EVENT_FB_FOLDER_UPDATE: PARAM is NULL!!!")},
        {8, dropped("SOCMW_MM_EVENT_THUMBNAIL_DATA_READY: param is NULL!!!")},
        {9, dropped("SOCMW_MM_EVENT_THUMBNAIL_DATA_READY: param is NULL!!!")},
        {10, dropped("SOCMW_MM_EVENT_GROUP_COMPLETED: PARAM is NULL!!!")},
        {12, {broadcast("storagemedia.media.loadsuccess", "null")}},
        {13, dropped("SOCMW_MM_EVENT_PLAYING_STATE: param is NULL!!!")},
        {14, {broadcast("storagemedia.media.loadfailed", "null")}},
        {15, {broadcast("storagemedia.audio.notsupport", "null")}},
        {16, {broadcast("storagemedia.video.music.playend", "null")}},
        {19, {dbg("SOCMW_MM_EVENT_VIDEO_NOT_SUPPORT_STATE"), broadcast("storagemedia.media.notsupport", "null")}},
        {21, dropped("SOCMW_MM_EVENT_MOVIE_INFO_UPDATE: PARAM is NULL!!!")},
        {22, dropped("SOCMW_MM_EVENT_MOVIE_STOP_SUCCESS_STATE: param is NULL!!!")},
        {23, dropped("SOCMW_MM_EVENT_PLAYING_STATE: param is NULL!!!")},
        {25, {broadcast("storagemedia.media.playfailed", "null")}},
        {26, dropped("SOCMW_MM_EVENT_MOVIE_INFO_UPDATE: PARAM is NULL!!!")},
        {27, dropped("SOCMW_MM_EVENT_MUSIC_STOP_SUCCESS_STATE: param is NULL!!!")},
        {29, {broadcast("storagemedia.media.photo.loadsuccess", "null")}},
        {31, {broadcast("storagemedia.media.loadfailed", "null")}},
        {32, {broadcast("storagemedia.media.playfailed", "null")}},
        {33, dropped("SOCMW_MM_EVENT_PHOTO_INFO_UPDATE: PARAM is NULL!!!")},
        {34, dropped("SOCMW_MM_PHOTO_EVENT_PLAY_END_STATE: PARAM is NULL!!!")},
        {35, dropped("SOCMW_MM_PHOTO_EVENT_STOP_SUCCESS_STATE: param is NULL!!!")},
        {37, dropped("SOCMW_MM_EVENT_PLAYING_CUT_TIME: PARAM is NULL!!!")},
        {38, dropped("SOCMW_MM_EVENT_SUBTITLE_CHANGE: param is NULL!!!")},
        {39, {dbg("SOCMW_DLNA_EVENT_DMR_SETURI"), broadcast("storagemedia.dlna.dmr.seturl", "null")}},
        {40, {dbg("SOCMW_DLNA_EVENT_DMR_PLAY"), dbg("SOCMW_DLNA_EVENT_DMR_PLAY: param is NULL!!!")}},
        {41, {dbg("SOCMW_DLNA_EVENT_DMR_PLAYEND"), broadcast("storagemedia.dlna.playend", "null")}},
        {42, {dbg("SOCMW_DLNA_EVENT_DMR_PAUSE/RESUME:Pause"), broadcast("storagemedia.dlna.dmrpause", R"({"pause":true})")}},
        {43, {dbg("SOCMW_DLNA_EVENT_DMR_STOP"), broadcast("storagemedia.dlna.stopfile", "null")}},
        {44,
         {dbg("SOCMW_DLNA_EVENT_DMR_PAUSE/RESUME:Resume"), broadcast("storagemedia.dlna.dmrpause", R"({"pause":false})")}},
        {45, {dbg("SOCMW_DLNA_EVENT_DMR_SEEK"), dbg("SOCMW_DLNA_EVENT_DMR_SEEK: param is NULL!!!")}},
        {46, {dbg("SOCMW_DLNA_EVENT_DMR_UNMUTE:Mute"), broadcast("storagemedia.dlna.dmrmute", R"({"mute":true})")}},
        {47, {dbg("SOCMW_DLNA_EVENT_DMR_UNMUTE:UnMute"), broadcast("storagemedia.dlna.dmrmute", R"({"mute":false})")}},
        {48, {dbg("SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME"), dbg("SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME: param is NULL!!!")}},
        {49, {dbg("SOCMW_DLNA_EVENT_AUDIO_PROGRESS")}},
        {51, {broadcast("storagemedia.fastboot.superdemo", "null")}},
        {52, {broadcast("storagemedia.set.usb.source", "null")}},
    };
    for (const int id : {7, 11, 17, 18, 20, 24, 28, 30, 36, 50, 53, 1000, -1, INT_MAX, INT_MIN}) {
        events.push_back({id, unknown(id)});
    }
    return events;
}

std::string idName(int id)
{
    return id < 0 ? "Minus" + std::to_string(-static_cast<long long>(id)) : "Id" + std::to_string(id);
}

class EveryEvent : public testing::TestWithParam<EventWithoutParameter> {};

TEST_P(EveryEvent, WithoutParameter_DoesWhatItsRowSays)
{
    Journal journal = {info("nEvt : " + std::to_string(GetParam().id))};
    journal.insert(journal.end(), GetParam().journal.begin(), GetParam().journal.end());
    Scenario(GetParam().id, kNoData).happens(journal).check();
}

TEST_P(EveryEvent, WithoutInstance_LogsAndDoesNothing)
{
    Scenario(GetParam().id, kNoData)
        .given([](FakePlatform&, ExposedPlugin&) { CStorageMediaPlugin::m_pThisControl = nullptr; })
        .happens({err("Instance is NULL!!!!")})
        .check();
}

INSTANTIATE_TEST_SUITE_P(Table, EveryEvent, testing::ValuesIn(everyEvent()),
                         [](const auto& row) { return idName(row.param.id); });

/// Events that publish a copy of their object and nothing else.
struct PassedOnEvent {
    int id;
    std::string notification;
};

class EventPassedOn : public testing::TestWithParam<PassedOnEvent> {};

TEST_P(EventPassedOn, WithObject_PublishesACopy)
{
    Json::Value object = parsed(R"({"any":[1,"two"],"reqId":3})");
    Scenario(GetParam().id, &object)
        .happens({info("nEvt : " + std::to_string(GetParam().id)),
                  broadcast(GetParam().notification, R"({"any":[1,"two"],"reqId":3})")})
        .check();
}

INSTANTIATE_TEST_SUITE_P(
    Table, EventPassedOn,
    testing::Values(PassedOnEvent{12, "storagemedia.media.loadsuccess"}, PassedOnEvent{14, "storagemedia.media.loadfailed"},
                    PassedOnEvent{15, "storagemedia.audio.notsupport"}, PassedOnEvent{22, "storagemedia.movie.stopsucc"},
                    PassedOnEvent{29, "storagemedia.media.photo.loadsuccess"},
                    PassedOnEvent{31, "storagemedia.media.loadfailed"}, PassedOnEvent{35, "storagemedia.photo.stopsucc"}),
    [](const auto& row) { return idName(row.param.id); });

/// Events whose parameter is never looked at: any pointer will do.
class EventWithUnreadParameter : public testing::TestWithParam<int> {};

TEST_P(EventWithUnreadParameter, AnyPointer_ChangesNothing)
{
    const std::vector<EventWithoutParameter> events = everyEvent();
    for (const EventWithoutParameter& event : events) {
        if (event.id == GetParam()) {
            Journal journal = {info("nEvt : " + std::to_string(event.id))};
            journal.insert(journal.end(), event.journal.begin(), event.journal.end());
            Scenario(event.id, reinterpret_cast<void*>(1)).happens(journal).check();
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Table, EventWithUnreadParameter,
                         testing::Values(0, 1, 7, 11, 16, 17, 18, 19, 20, 24, 25, 28, 30, 32, 36, 39, 41, 42, 43, 44, 46, 47,
                                         49, 50, 51, 52, 53, -1),
                         [](const auto& row) { return idName(row.param); });

// The host sets its callback before events can arrive, and the middleware always sends a fragment: neither is tested for.

TEST(EventListenerDeathTest, PublishingWithoutCallback_Crashes)
{
    FakePlatform platform;
    const ExposedPlugin plugin;
    EXPECT_DEATH(CStorageMediaPlugin::onRecvEvent(52, nullptr), "");
    Json::Value object;
    EXPECT_DEATH(CStorageMediaPlugin::onRecvEvent(5, &object), "");
    EXPECT_DEATH(CStorageMediaPlugin::onRecvEvent(12, nullptr), "");
}

TEST(EventListenerDeathTest, FragmentWithoutParameter_Crashes)
{
    FakePlatform platform;
    ExposedPlugin plugin;
    plugin.setCallback(recordPublication);
    EXPECT_DEATH(CStorageMediaPlugin::onRecvEvent(6, nullptr), "");
}

TEST(EventListener, LevelThatChangesBetweenItsLines_IsReadForEach)
{
    std::int32_t volume = 5;
    Scenario(48, &volume)
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.logLevels = {2, 0, 1};
        })
        .happens({printed("[DBG][onRecvEvent]SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME\r\n"),
                  broadcast("storagemedia.dlna.adjustvolume", R"({"volume":5})")})
        .checkAt(4);
}

} // namespace
