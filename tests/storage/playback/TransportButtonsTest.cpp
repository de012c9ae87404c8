#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

struct Button {
    std::string handler;
    Scenario::Command command;
    std::string operation; ///< of the manager
    bool takesPlay;        ///< reads "play" and passes it on
    bool takesPhotos;      ///< accepts type 3
    std::string refusal;   ///< before the type's number
};

class TransportButton : public testing::TestWithParam<Button> {
protected:
    static Scenario press(const std::string& request)
    {
        return Scenario(GetParam().handler, GetParam().command).request(request);
    }

    static Journal reading(const Journal& afterwards)
    {
        Journal journal = {readUInt("type")};
        if (GetParam().takesPlay) {
            journal.push_back(readBool("play"));
        }
        journal.insert(journal.end(), afterwards.begin(), afterwards.end());
        return journal;
    }

    static Happening call(const std::string& type, const std::string& play)
    {
        return did(GetParam().operation + "(" + type + (GetParam().takesPlay ? ", " + play : "") + ")");
    }
};

TEST_P(TransportButton, AcceptedType_ReachesTheManager)
{
    for (const std::string type : {"3", "4", "5"}) {
        for (const std::string play : {"true", "false"}) {
            if (type == "3" && !GetParam().takesPhotos) {
                continue;
            }
            press(R"({"type":)" + type + R"(,"play":)" + play + "}")
                .happens(reading({dbg("file type:" + type), manager(), call(type, play)}))
                .succeeds()
                .check();
        }
    }
}

TEST_P(TransportButton, OtherType_IsRefusedBeforeTheManager)
{
    for (const std::string type : {"0", "1", "2", "3", "6", "7"}) {
        if (type == "3" && GetParam().takesPhotos) {
            continue;
        }
        press(R"({"type":)" + type + R"(,"play":true})")
            .happens(reading({dbg("file type:" + type), err(GetParam().refusal + type)}))
            .fails()
            .check();
    }
    press(R"({"type":4294967295,"play":true})")
        .happens(reading({dbg("file type:-1"), err(GetParam().refusal + "-1")}))
        .fails()
        .check();
}

TEST_P(TransportButton, ManagerRefuses_LogsItsStatus)
{
    press(R"({"type":4,"play":true})")
        .refusedBy(GetParam().operation)
        .happens(reading({dbg("file type:4"), manager(), call("4", "true"), err("Failed!!! ret:<status>")}))
        .fails()
        .check();
}

TEST_P(TransportButton, PlayKey_IsRequiredOfPlayPauseAlone)
{
    for (const char* request : {R"({"type":4})", R"({"type":4,"play":1})"}) {
        if (GetParam().takesPlay) {
            press(request).happens(reading({err("unknown play Option!!!")})).fails().check();
        } else {
            press(request).happens(reading({dbg("file type:4"), manager(), call("4", "")})).succeeds().check();
        }
    }
}

TEST_P(TransportButton, TypeUnreadable_Fails)
{
    for (const char* request : {R"({"play":true})", R"({"type":"4","play":true})", R"({"type":-1,"play":true})"}) {
        press(request).happens({readUInt("type"), err("unknown File Type")}).fails().check();
    }
}

TEST_P(TransportButton, NullPointers_Fail)
{
    press("{}").nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    press("{}").nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

INSTANTIATE_TEST_SUITE_P(Buttons, TransportButton,
                         testing::Values(Button{"onPlayPauseButton", &CStorageMediaPlugin::onPlayPauseButton, "keyPlayPause",
                                                true, true, "not a Playable Type:"},
                                         Button{"onPrevButton", &CStorageMediaPlugin::onPrevButton, "keyPlayPrev", false,
                                                true, "not a Playable Type:"},
                                         Button{"onNextButton", &CStorageMediaPlugin::onNextButton, "keyPlayNext", false,
                                                true, "not a Playable Type:"},
                                         Button{"onFastForwardButton", &CStorageMediaPlugin::onFastForwardButton,
                                                "keyFastForward", false, false, "not a Seekable Type:"},
                                         Button{"onFastRewindButton", &CStorageMediaPlugin::onFastRewindButton,
                                                "keyFastRewind", false, false, "not a Seekable Type:"}),
                         [](const auto& row) { return row.param.handler; });

} // namespace
