#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

// What the loops that play have in common: a benchmark tells them line by line what to do.

/// Pixels of a picture that is drawn, as many as the film has.
constexpr int kWidth = 1280;
constexpr int kHeight = 720;

/// Does what a line says; its numbers, times in nanoseconds, are the answer. Throws std::exception.
using LineAction = std::function<std::vector<std::int64_t>(const std::string& argument)>;

/// Nanoseconds since @p begin.
inline std::int64_t since(std::chrono::steady_clock::time_point begin)
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now() - begin).count();
}

/// Answers the lines of standard input, each a word of @p actions and its argument, with a line of numbers; the exit status.
inline int answerLines(const std::map<std::string, LineAction>& actions)
try {
    std::string word;
    std::string argument;
    while (std::cin >> word && std::getline(std::cin >> std::ws, argument)) {
        for (const std::int64_t number : actions.at(word)(argument)) {
            std::printf("%lld ", static_cast<long long>(number));
        }
        std::printf("\n");
        std::fflush(stdout);
    }
    return 0;
} catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
