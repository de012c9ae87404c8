#include "desktop/host/PluginLibrary.h"

#include "desktop/base/ProgramFiles.h"

#include <dlfcn.h>

#include <stdexcept>

namespace desktop {

void PluginLibrary::Close::operator()(void* handle) const
{
    dlclose(handle);
}

PluginLibrary::PluginLibrary(const std::string& file)
    : m_handle(dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL))
{
    if (m_handle == nullptr) {
        throw std::runtime_error(std::string("cannot load the plugin: ") + dlerror());
    }
    find(m_entryPoints.load, "Plugin_Load");
    find(m_entryPoints.execute, "Plugin_Execute");
    find(m_entryPoints.unload, "Plugin_Unload");
    find(m_entryPoints.setPublishCallback, "Server_PublishNotification_Callback");
}

template <typename Function>
void PluginLibrary::find(Function& function, const char* name)
{
    void* const symbol = dlsym(m_handle.get(), name);
    if (symbol == nullptr) {
        throw std::runtime_error(std::string("this is no plugin: ") + dlerror());
    }
    function = reinterpret_cast<Function>(symbol);
}

std::string defaultPluginFile()
{
    return programFile(PLUGIN_BUILT, PLUGIN_INSTALLED);
}

} // namespace desktop
