#pragma once

#include "storage/CStorageMediaPlugin.h"

#include <string>
#include <utility>
#include <vector>

/// The plugin with its state open to tests.
class ExposedPlugin : public tvfirmware::CStorageMediaPlugin {
public:
    using CStorageMediaPlugin::m_directoryChanging;
    using CStorageMediaPlugin::m_intList;
    using CStorageMediaPlugin::m_itemCountPerPage;
    using CStorageMediaPlugin::m_pagingPosition;
    using CStorageMediaPlugin::m_pPublishCallback;
    using CStorageMediaPlugin::m_requestSlots;
    using CStorageMediaPlugin::m_scanChannel;
    using CStorageMediaPlugin::m_thumbnailChannel;
    using CStorageMediaPlugin::m_thumbnailIndex;
    using CStorageMediaPlugin::m_thumbnailTotal;
};

/// Puts a value into every field of @p plugin that no other field and no default has, so that a field that must stay is seen
/// to stay. The callback is left alone.
void fillWithOddValues(ExposedPlugin& plugin);

/// Name and value of each field of a plugin, as the journal writes them.
using PluginState = std::vector<std::pair<std::string, std::string>>;
PluginState stateOf(const ExposedPlugin& plugin);

/// Writes each change of a plugin's fields into the journal: before the call, notification or log line that comes next (one
/// that is suppressed, too), or at the end. Lives as long as the journal is to tell of changes.
class StateWatch {
public:
    explicit StateWatch(const ExposedPlugin& plugin);
    ~StateWatch();
    StateWatch(const StateWatch&) = delete;
    StateWatch& operator=(const StateWatch&) = delete;

private:
    std::string takeChanges();

    const ExposedPlugin& m_plugin;
    PluginState m_known;
};
