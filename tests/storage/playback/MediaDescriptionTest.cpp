#include "support/Scenario.h"

#include <gtest/gtest.h>

namespace {

using tvfirmware::CStorageMediaPlugin;

Scenario metadata()
{
    return {"getMediaMetadata", &CStorageMediaPlugin::getMediaMetadata};
}

const Happening kAsked = did(R"(getMediaMetadata("", "", "", "", 4))");

TEST(MediaMetadata, FilledRecord_RepliesEachField)
{
    metadata()
        .request(R"({"ignored":true})")
        .given([](FakePlatform& platform, ExposedPlugin&) {
            platform.meta.title = "T";
            platform.meta.size = "S";
            platform.meta.date = "D";
            platform.meta.codec = "C";
            platform.meta.dolby = -1;
        })
        .happens({manager(), kAsked, dbg("MetaData :\r\n title:T\r\nsize:S\r\ndate:D\r\ncodec:C\r\n")})
        .succeeds()
        .leavesReply(R"({"codec":"C","date":"D","dolby":-1,"size":"S","title":"T"})")
        .check();
}

TEST(MediaMetadata, UntouchedRecord_HasDolbyFour)
{
    metadata()
        .happens({manager(), kAsked, dbg("MetaData :\r\n title:\r\nsize:\r\ndate:\r\ncodec:\r\n")})
        .succeeds()
        .leavesReply(R"({"codec":"","date":"","dolby":4,"size":"","title":""})")
        .check();
}

TEST(MediaMetadata, ManagerRefuses_IsSilentAndKeepsTheReply)
{
    metadata().refusedBy("getMediaMetadata").happens({manager(), kAsked}).fails().check();
}

TEST(MediaMetadata, NullPointers_Fail)
{
    metadata().nullRequest().happens({err("Params is NULL!!!")}).fails().check();
    metadata().nullReply().happens({err("Params is NULL!!!")}).fails().check();
}

Scenario codec(const std::string& request)
{
    return Scenario("getbrowsercodec", &CStorageMediaPlugin::getbrowsercodec).request(request);
}

Happening trace(int number)
{
    return printed("enter CStorageMediaPlugin susscess " + std::to_string(number) + "\n");
}

Happening asked(const std::string& type)
{
    return did("getbrowsercodec(" + type + ", fresh)");
}

void everyField(FakePlatform& platform, ExposedPlugin& /*plugin*/)
{
    browser_codec& codec = platform.codec;
    codec.strTitle = "title";
    codec.strVCodec = "video codec";
    codec.strResolu = "resolution";
    codec.strACodec = "audio codec";
    codec.strSubFormat = "subtitle format";
    codec.strAprofile = "audio profile";
    codec.strAlevels = "audio level";
    codec.FrameRate = 4000000000U;
    codec.Achannel = -1;
    codec.Afrequen = -2;
    codec.Abitrate = -3;
    codec.culVideoCodec = -4;
    codec.culAudioCodec = -5;
    codec.Mchanel = 4000000001U;
    codec.strMcodec = "music codec";
    codec.strMfrequen = "music frequency";
    codec.strMbirate = "music bit rate";
    codec.strMaprofile = "music profile";
    codec.strMalevels = "music level";
    codec.strPcodec = "photo codec";
    codec.strPresolu = "photo resolution";
    codec.strPJepg = "photo jpeg";
}

TEST(BrowserCodec, FilledRecord_RepliesAllKeysWithTheirTypes)
{
    codec(R"({"type":4})")
        .given(everyField)
        .happens({trace(2521), trace(2527), readUInt("type"), manager(), asked("4"), trace(2538), trace(2542), trace(2545)})
        .succeeds()
        .leavesReply(R"({"Abitrate":-3,"Achannel":-1,"Afrequen":-2,"FrameRate":4000000000u,"Mchanel":4000000001u,)"
                     R"("culAudioCodec":-5,"culVideoCodec":-4,"strACodec":"audio codec","strAlevels":"audio level",)"
                     R"("strAprofile":"audio profile","strMalevels":"music level","strMaprofile":"music profile",)"
                     R"("strMbirate":"music bit rate","strMcodec":"music codec","strMfrequen":"music frequency",)"
                     R"("strPJepg":"photo jpeg","strPcodec":"photo codec","strPresolu":"photo resolution",)"
                     R"("strResolu":"resolution","strSubFormat":"subtitle format","strTitle":"title",)"
                     R"("strVCodec":"video codec"})")
        .check();
}

TEST(BrowserCodec, AnyUnsignedType_ReachesTheManager)
{
    for (const auto& [request, passed] :
         std::map<std::string, std::string>{{"0", "0"}, {"77", "77"}, {"4294967295", "-1"}}) {
        codec(R"({"type":)" + request + "}")
            .happens({trace(2521), trace(2527), readUInt("type"), manager(), asked(passed), trace(2538), trace(2542),
                      trace(2545)})
            .succeeds()
            .leavesReply(R"({"Abitrate":0,"Achannel":0,"Afrequen":0,"FrameRate":0u,"Mchanel":0u,"culAudioCodec":0,)"
                         R"("culVideoCodec":0,"strACodec":"","strAlevels":"","strAprofile":"","strMalevels":"",)"
                         R"("strMaprofile":"","strMbirate":"","strMcodec":"","strMfrequen":"","strPJepg":"","strPcodec":"",)"
                         R"("strPresolu":"","strResolu":"","strSubFormat":"","strTitle":"","strVCodec":""})")
            .check();
    }
}

TEST(BrowserCodec, ManagerRefuses_WritesThreeTraceLines)
{
    codec(R"({"type":4})")
        .refusedBy("getbrowsercodec")
        .happens({trace(2521), trace(2527), readUInt("type"), manager(), asked("4"), trace(2538)})
        .fails()
        .check();
}

TEST(BrowserCodec, TypeUnreadable_WritesTwoTraceLines)
{
    for (const char* request : {"{}", R"({"type":-1})"}) {
        codec(request).happens({trace(2521), trace(2527), readUInt("type"), err("unknown File Type")}).fails().check();
    }
}

TEST(BrowserCodec, NullPointers_WriteTwoTraceLines)
{
    codec("{}").nullRequest().happens({trace(2521), trace(2527), err("Params is NULL!!!")}).fails().check();
    codec("{}").nullReply().happens({trace(2521), trace(2527), err("Params is NULL!!!")}).fails().check();
}

} // namespace
