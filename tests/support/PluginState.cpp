#include "support/PluginState.h"

#include "platform/Recording.h"
#include "support/Journal.h"

#include <iterator>

using tvfirmware::CStorageMediaPlugin;

void fillWithOddValues(ExposedPlugin& plugin)
{
    for (std::size_t i = 0; i < std::size(plugin.m_requestSlots); ++i) {
        const std::string of = " of slot " + std::to_string(i);
        plugin.m_requestSlots[i] = {"odd channel" + of, "odd request" + of, "odd event" + of, "odd extra" + of};
    }
    plugin.m_scanChannel = {"odd scan channel", "odd scan request", "odd scan event", "odd scan filter", "odd scan extra"};
    plugin.m_thumbnailChannel = {"odd picture channel", "odd picture request", "odd picture event", "odd picture extra"};
    plugin.m_thumbnailIndex = -77;
    plugin.m_intList = {7, -7};
    plugin.m_itemCountPerPage = 1234;
    plugin.m_pagingPosition = 4321;
    plugin.m_directoryChanging = true;
    plugin.m_thumbnailTotal = 555;
}

namespace {

std::string instanceText(const ExposedPlugin& plugin)
{
    if (CStorageMediaPlugin::m_pThisControl == nullptr) {
        return "null";
    }
    return CStorageMediaPlugin::m_pThisControl == &plugin ? "this" : "another";
}

} // namespace

PluginState stateOf(const ExposedPlugin& plugin)
{
    using recording::text;
    const auto& scan = plugin.m_scanChannel;
    const auto& pictures = plugin.m_thumbnailChannel;
    PluginState all = {
        {"m_pThisControl", instanceText(plugin)},
        {"m_pPublishCallback", pointerText(plugin.m_pPublishCallback)},
        {"m_scanChannel.channel", text(scan.channel)},
        {"m_scanChannel.reqId", text(scan.reqId)},
        {"m_scanChannel.event", text(scan.event)},
        {"m_scanChannel.filterType", text(scan.filterType)},
        {"m_scanChannel.extra", text(scan.extra)},
        {"m_thumbnailChannel.channel", text(pictures.channel)},
        {"m_thumbnailChannel.reqId", text(pictures.reqId)},
        {"m_thumbnailChannel.event", text(pictures.event)},
        {"m_thumbnailChannel.extra", text(pictures.extra)},
        {"m_thumbnailIndex", text(plugin.m_thumbnailIndex)},
        {"m_intList", text(plugin.m_intList)},
        {"m_itemCountPerPage", text(plugin.m_itemCountPerPage)},
        {"m_pagingPosition", text(plugin.m_pagingPosition)},
        {"m_directoryChanging", text(plugin.m_directoryChanging)},
    };
    for (std::size_t i = 0; i < std::size(plugin.m_requestSlots); ++i) {
        const auto& slot = plugin.m_requestSlots[i];
        const std::string name = "m_requestSlots[" + std::to_string(i) + "].";
        all.insert(all.end(), {{name + "channel", text(slot.channel)},
                               {name + "reqId", text(slot.reqId)},
                               {name + "event", text(slot.event)},
                               {name + "extra", text(slot.extra)}});
    }
    all.emplace_back("m_thumbnailTotal", text(plugin.m_thumbnailTotal));
    return all;
}

StateWatch::StateWatch(const ExposedPlugin& plugin)
    : m_plugin(plugin)
    , m_known(stateOf(plugin))
{
    FakePlatform::instance().onJournal = [this] { return takeChanges(); };
}

StateWatch::~StateWatch()
{
    FakePlatform::instance().onJournal = nullptr;
}

std::string StateWatch::takeChanges()
{
    PluginState now = stateOf(m_plugin);
    std::string changes;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (now[i].second != m_known[i].second) {
            changes += "{" + now[i].first + " = " + now[i].second + "}\n";
        }
    }
    m_known = std::move(now);
    return changes;
}
