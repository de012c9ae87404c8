#pragma once

#include "platform/FakePlatform.h"

#include <json/json.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>

/// Plays a script to the plugin, loaded as the host loads it, and aborts when a rule of its contract is broken.
///
/// A script is text, so that what a fuzzer finds can be read. Each line is one step; a line that is no step the player
/// plays is skipped, and JSON that ends early counts as far as it goes.
///
///     7 {"keystr":"Jazz","asc":1}      command 7 with this request
///     ~7 {"keystr":"Jazz","asc":1}     the same with a null reply
///     !4 [{"path":"/a/b"}]             event 4 with a parameter made of this, null with none
///     ={"statuses":{"chdir":-1}}       what the platform answers from now on
///     -                                the host takes its callback back, until the next +
///     +                                the host sets its callback
///
/// Uses that the contract leaves undefined are not played: event 6 without parameter, records that lack what their event
/// promises, and events that publish while there is no callback.
class Player {
public:
    /// Loads the plugin and sets the callback. One player lives at a time.
    Player();
    ~Player();
    Player(const Player&) = delete;
    Player& operator=(const Player&) = delete;

    /// Plays the steps of @p script whose first character is in @p kinds; '0' stands for every digit.
    void play(std::string_view script, std::string_view kinds);

private:
    static void publish(const char* source, const char* name, Json::Value& body);
    void step(char kind, const std::string& line);
    void execute(unsigned int number, const std::string& json, bool withReply);
    void deliver(int event, const std::string& json);
    void setCallback(bool set);
    void checkPublication(const std::string& source, const std::string& name, const Json::Value& body);

    FakePlatform m_platform;
    std::set<std::string> m_channels = {""}; ///< that requests have named
    bool m_hasCallback = false;
    int m_published = 0; ///< notifications of the current step
};

/// The fuzzers' entry: plays @p data as a script.
int playInput(const std::uint8_t* data, std::size_t size, std::string_view kinds);
