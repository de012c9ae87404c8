#include "desktop/host/Television.h"

#include "desktop/host/CommandNames.h"

namespace desktop {

Television* Television::s_running = nullptr;

Television::Television(TelevisionSettings settings)
    : m_settings(std::move(settings))
    , m_plugin(m_settings.pluginFile)
{
    DesktopSettings desktop = m_settings.desktop;
    desktop.observer.progress = [this](const std::string& directory, std::size_t entries) {
        m_answers.stillWorking();
        if (m_settings.desktop.observer.progress) {
            m_settings.desktop.observer.progress(directory, entries);
        }
    };
    s_running = this;
    DesktopMiddleware::instance().open(std::move(desktop));
    m_plugin.load();
    m_plugin.setPublishCallback(&Television::publish);
    DesktopMiddleware::instance().startEvents(); // only now is there somebody to publish them to
}

Television::~Television()
{
    DesktopMiddleware::instance().close(); // the event thread has ended before the plugin goes
    m_plugin.unload();
    s_running = nullptr;
}

bool Television::execute(const std::string& command, Json::Value request, Json::Value& reply)
{
    request["CmdHash"] = commandHash(command);
    const auto turn = DesktopMiddleware::instance().events().holdDelivery();
    m_answers.begin(command, request);
    if (!m_plugin.execute(command.c_str(), &request, &reply)) {
        m_answers.refused();
        return false;
    }
    m_answers.succeeded();
    if (command == "storagemedia.folder.user.cancel") {
        m_answers.forget("storagemedia.folder.chgdir");
    }
    return true;
}

void Television::publish(const char* source, const char* event, Json::Value& body)
{
    if (s_running->m_settings.notified) {
        s_running->m_settings.notified(source, event, body);
    }
    s_running->m_answers.notified(event, body);
}

} // namespace desktop
