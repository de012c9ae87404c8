#include "platform/FakePlatform.h"

#include "platform/PluginHost.h"
#include "support/Journal.h"
#include "support/TypedJson.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>

namespace {

using Names = std::set<std::string>;

std::string outputOf(const std::string& command)
{
    std::string text;
    FILE* pipe = popen(command.c_str(), "r");
    char buffer[4096];
    while (std::fgets(buffer, sizeof buffer, pipe) != nullptr) {
        text += buffer;
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return text;
}

Names lines(std::istream&& text)
{
    Names names;
    for (std::string line; std::getline(text, line);) {
        if (!line.empty() && line.front() != '#') {
            names.insert(line);
        }
    }
    return names;
}

/// Demangled names of @p kind ("--defined-only" or "--undefined-only"), without type letters and versions.
Names namesOf(const std::string& kind)
{
    Names names;
    for (const std::string& line : lines(std::istringstream(
             outputOf(std::string(NM) + " -D -C --without-symbol-versions " + kind + " " + PLUGIN_LIBRARY)))) {
        const auto letter = line.find_first_not_of("0123456789abcdef ");
        names.insert(line.substr(letter + 2));
    }
    return names;
}

bool startsWith(const std::string& text, const std::string& start)
{
    return text.rfind(start, 0) == 0;
}

/// Whether the boundary's headers declare @p name.
bool isBoundary(const std::string& name)
{
    for (const char* owner : {"SocM", "FolderBrowser::", "tvfirmware::CJsonOperation::", "gSocMw"}) {
        if (startsWith(name, owner)) {
            return true;
        }
    }
    return false;
}

/// Whether the C, C++ or jsoncpp library (or the compiler's runtime) provides @p name.
bool isLibrary(const std::string& name)
{
    for (void* library :
         {dlopen("libc.so.6", RTLD_NOW), dlopen("libstdc++.so.6", RTLD_NOW), dlopen("libgcc_s.so.1", RTLD_NOW)}) {
        if (dlsym(library, name.c_str()) != nullptr) {
            return true;
        }
    }
    // The last is what a sanitized build looks at when it checks the type of the manager.
    for (const char* owner :
         {"Json::", "std::", "operator ", "vtable for __cxxabiv1", "__cxa", "__gxx", "_ITM_", "__gmon_start__", "__asan",
          "__ubsan", "__gcov", "__llvm", "__sanitizer", "typeinfo for SocMwStorageUsbMgr"}) {
        if (startsWith(name, owner)) {
            return true;
        }
    }
    return false;
}

TEST(Library, ExportedNames_AreTheStoredOnes)
{
    EXPECT_EQ(namesOf("--defined-only"), lines(std::ifstream(EXPORTED_NAMES)));
}

TEST(Library, UndefinedNames_AreTheBoundaryAndTheStandardLibraries)
{
    Names boundary;
    for (const std::string& name : namesOf("--undefined-only")) {
        if (isBoundary(name)) {
            boundary.insert(name);
        } else {
            EXPECT_TRUE(isLibrary(name)) << name;
        }
    }
    EXPECT_EQ(boundary, lines(std::ifstream(BOUNDARY_NAMES)));
}

/// The library as the host holds it.
class LoadedLibrary : public testing::Test {
protected:
    LoadedLibrary()
        : m_library(dlopen(PLUGIN_LIBRARY, RTLD_NOW | RTLD_LOCAL))
    {
        if (m_library == nullptr) {
            throw std::runtime_error(dlerror());
        }
    }

    ~LoadedLibrary() override { close(); }

    void close()
    {
        if (m_library != nullptr) {
            dlclose(std::exchange(m_library, nullptr));
        }
    }

    template <typename Function>
    Function* entry(const char* name)
    {
        void* address = dlsym(m_library, name);
        EXPECT_NE(address, nullptr) << name;
        return reinterpret_cast<Function*>(address);
    }

    FakePlatform platform;

private:
    void* m_library;
};

TEST_F(LoadedLibrary, CalledInTheHostsOrder_Works)
{
    EXPECT_EQ(entry<int()>("Plugin_GetId")(), 10);
    EXPECT_STREQ(*entry<const char*>("PLUGIN_HEADER_STORAGEMEDIA"), "storagemedia");
    EXPECT_STREQ(entry<const char*()>("Plugin_Load")(), "storagemedia");
    entry<void(PublishNotificationCallback)>("Server_PublishNotification_Callback")(recordPublication);
    platform.takeJournal();

    Json::Value request;
    Json::Value reply;
    request["CmdHash"] = 3414262598U; // storagemedia.folder.chgdir
    request["channelId"] = "c1";
    request["reqId"] = "r1";
    request["dirpath"] = "/a";
    const auto execute = entry<bool(const char*, Json::Value*, Json::Value*)>("Plugin_Execute");
    EXPECT_TRUE(execute("storagemedia.folder.chgdir", &request, &reply));
    std::vector<FolderFileInfo_s> files;
    platform.listener(4, &files);
    EXPECT_EQ(
        platform.takeJournal(),
        render({did("log FRAMEWORK 0 storageMedia plugin Plugin_Execute: storagemedia.folder.chgdir"),
                readString("channelId"), readString("reqId"), readInt("number", 9), manager(), did("stopThumbnail()"),
                manager(), did(R"(chdir("/a", 9))"),
                published("c1", "storagemedia.folder.chgdir.complete", R"({"filecount":0u,"filelst":[],"reqId":"r1"})")},
               "", 4));

    EXPECT_EQ(entry<int(int, void*)>("Plugin_RecvNotification")(5, nullptr), 1);
    entry<void(void*)>("Server_NotificationToPlugin_Callback")(nullptr);
    entry<void()>("Plugin_Unload")();
}

TEST_F(LoadedLibrary, BeforeLoad_EntryPointsWithoutAnInstanceOnlyLog)
{
    EXPECT_EQ(entry<int()>("Plugin_GetId")(), 10);
    EXPECT_EQ(entry<int(int, void*)>("Plugin_RecvNotification")(5, nullptr), 1);
    entry<void(void*)>("Server_NotificationToPlugin_Callback")(nullptr);
    entry<void()>("Plugin_Unload")();
    EXPECT_EQ(platform.takeJournal(),
              "<log FRAMEWORK 0 [TVFW::StoragePlugin] storage plugin Plugin_RecvNotification: 5>\n"
              "<log FRAMEWORK 0 [TVFW::StoragePlugin] storage plugin Server_NotificationToPlugin_Callback: (nil)>\n"
              "<log FRAMEWORK 0 [TVFW::StoragePlugin] storage plugin Plugin_Unload>\n");
}

TEST_F(LoadedLibrary, ExportedHash_IsTheHosts)
{
    const auto hash = entry<unsigned int(const char*)>("_ZN10tvfirmware10str2hashidEPKc");
    EXPECT_EQ(hash("storagemedia.folder.chgdir"), 3414262598U);
}

TEST_F(LoadedLibrary, BodiesThatTheHostKeeps_OutliveTheLibrary)
{
    static Json::Value kept;
    entry<const char*()>("Plugin_Load")();
    entry<void(PublishNotificationCallback)>("Server_PublishNotification_Callback")(
        [](const char*, const char*, Json::Value& body) { kept = std::move(body); });
    std::vector<FolderFileInfo_s> files(1);
    files[0].path = "/a/b";
    platform.listener(4, &files);
    entry<void()>("Plugin_Unload")();
    close();
    ASSERT_EQ(dlopen(PLUGIN_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library is still there";
    EXPECT_EQ(
        testsupport::typed(kept),
        R"({"filecount":1u,"filelst":[{"ctime":"","isPhoto360":false,"name":"","path":"/a/b","size":0u,"title":"","type":0}],)"
        R"("reqId":""})");
}

} // namespace
