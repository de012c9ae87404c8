#include "storage/CStorageMediaPlugin.h"

#include "storage/Log.h"
#include "storage/Platform.h"
#include "storage/RequestKeys.h"

namespace tvfirmware {

namespace {

Json::Value describe(const meta_data_t& meta)
{
    Json::Value answer;
    answer["title"] = meta.title;
    answer["size"] = meta.size;
    answer["date"] = meta.date;
    answer["codec"] = meta.codec;
    answer["dolby"] = meta.dolby;
    return answer;
}

// Numbers for the sound of a video, texts for music: the screens rely on the difference.
Json::Value describe(const browser_codec& codec)
{
    Json::Value answer;
    answer["strTitle"] = codec.strTitle;
    answer["strVCodec"] = codec.strVCodec;
    answer["strResolu"] = codec.strResolu;
    answer["FrameRate"] = codec.FrameRate;
    answer["strACodec"] = codec.strACodec;
    answer["Achannel"] = codec.Achannel;
    answer["Afrequen"] = codec.Afrequen;
    answer["Abitrate"] = codec.Abitrate;
    answer["strSubFormat"] = codec.strSubFormat;
    answer["strAprofile"] = codec.strAprofile;
    answer["strAlevels"] = codec.strAlevels;
    answer["culVideoCodec"] = codec.culVideoCodec;
    answer["Mchanel"] = codec.Mchanel;
    answer["strMcodec"] = codec.strMcodec;
    answer["strMfrequen"] = codec.strMfrequen;
    answer["strMbirate"] = codec.strMbirate;
    answer["strMaprofile"] = codec.strMaprofile;
    answer["strMalevels"] = codec.strMalevels;
    answer["culAudioCodec"] = codec.culAudioCodec;
    answer["strPcodec"] = codec.strPcodec;
    answer["strPresolu"] = codec.strPresolu;
    answer["strPJepg"] = codec.strPJepg;
    return answer;
}

} // namespace

bool CStorageMediaPlugin::getMediaMetadata(Json::Value* request, Json::Value* reply)
{
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    meta_data_t meta;
    if (storageManager()->getMediaMetadata(meta) != 0) {
        return false;
    }
    LOG_DBG("MetaData :\r\n title:%s\r\nsize:%s\r\ndate:%s\r\ncodec:%s\r\n", meta.title.c_str(), meta.size.c_str(),
            meta.date.c_str(), meta.codec.c_str());
    *reply = describe(meta);
    return true;
}

// The trace lines are part of the command's output, their numbers fixed: test benches wait for them.
bool CStorageMediaPlugin::getbrowsercodec(Json::Value* request, Json::Value* reply)
{
    std::puts("enter CStorageMediaPlugin susscess 2521");
    std::puts("enter CStorageMediaPlugin susscess 2527");
    if (request == nullptr || reply == nullptr) {
        LOG_ERR("Params is NULL!!!");
        return false;
    }
    unsigned int type = 0;
    if (!readUInt(*request, "type", type)) {
        LOG_ERR("unknown File Type");
        return false;
    }
    browser_codec codec;
    const int ret = storageManager()->getbrowsercodec(static_cast<FileType>(type), codec);
    std::puts("enter CStorageMediaPlugin susscess 2538");
    if (ret != 0) {
        return false;
    }
    std::puts("enter CStorageMediaPlugin susscess 2542");
    *reply = describe(codec);
    std::puts("enter CStorageMediaPlugin susscess 2545");
    return true;
}

} // namespace tvfirmware
