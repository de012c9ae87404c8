#include "support/Scenario.h"

#include "platform/SocMwEvents.h"

#include <gtest/gtest.h>

namespace {

TEST(RendererPlay, FileType_IsPublishedSigned)
{
    for (std::int32_t type : {4, 0, -2}) {
        const std::string number = std::to_string(type);
        Scenario(40, &type)
            .happens({info("nEvt : 40"), dbg("SOCMW_DLNA_EVENT_DMR_PLAY"), dbg("DMR File Type:" + number),
                      broadcast("storagemedia.dlna.playfiletype", R"({"type":)" + number + "}")})
            .check();
    }
}

TEST(RendererSeek, Position_IsPublishedUnsignedAndModeSigned)
{
    struct Seek {
        dmr_seek_s seek;
        std::string body;
        std::string line;
    };
    for (const Seek& expected : {Seek{{-1, 2}, R"({"seekmod":2,"seekpos":4294967295u})", "Seek pos:-1, mod:2"},
                                 Seek{{70, -1}, R"({"seekmod":-1,"seekpos":70u})", "Seek pos:70, mod:-1"}}) {
        dmr_seek_s seek = expected.seek;
        Scenario(45, &seek)
            .happens({info("nEvt : 45"), dbg("SOCMW_DLNA_EVENT_DMR_SEEK"), dbg(expected.line),
                      broadcast("storagemedia.dlna.setseek", expected.body)})
            .check();
    }
}

TEST(RendererVolume, Volume_IsPublishedSigned)
{
    for (std::int32_t volume : {30, 0, -1}) {
        const std::string number = std::to_string(volume);
        Scenario(48, &volume)
            .happens({info("nEvt : 48"), dbg("SOCMW_DLNA_EVENT_DMR_ADJUSTVOLUME"), dbg("DMR change volume:" + number),
                      broadcast("storagemedia.dlna.adjustvolume", R"({"volume":)" + number + "}")})
            .check();
    }
}

} // namespace
