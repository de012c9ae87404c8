#pragma once

#include "platform/FakePlatform.h"

#include <json/json.h>

#include <string>
#include <vector>

// Lenient readers: what is missing or of another type is zero or empty.
std::int32_t numberIn(const Json::Value& object, const char* key);
std::string textIn(const Json::Value& object, const char* key);
std::vector<FolderFileInfo_s> filesOf(const Json::Value& list);

/// Scripts @p platform by the members of @p answers, each named like the field it sets; others stay as they are.
void answerWith(FakePlatform& platform, const Json::Value& answers);
