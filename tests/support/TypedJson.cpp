#include "support/TypedJson.h"

#include <memory>
#include <stdexcept>

namespace testsupport {

namespace {

std::string typedObject(const Json::Value& value)
{
    std::string text;
    for (const std::string& name : value.getMemberNames()) {
        text += (text.empty() ? "" : ",") + Json::valueToQuotedString(name.c_str()) + ":" + typed(value[name]);
    }
    return "{" + text + "}";
}

std::string typedArray(const Json::Value& value)
{
    std::string text;
    for (const Json::Value& element : value) {
        text += (text.empty() ? "" : ",") + typed(element);
    }
    return "[" + text + "]";
}

} // namespace

std::string typed(const Json::Value& value)
{
    switch (value.type()) {
    case Json::nullValue:
        return "null";
    case Json::intValue:
        return std::to_string(value.asLargestInt());
    case Json::uintValue:
        return std::to_string(value.asLargestUInt()) + "u";
    case Json::realValue:
        return std::to_string(value.asDouble()) + "r";
    case Json::stringValue:
        return Json::valueToQuotedString(value.asCString());
    case Json::booleanValue:
        return value.asBool() ? "true" : "false";
    case Json::arrayValue:
        return typedArray(value);
    case Json::objectValue:
        return typedObject(value);
    }
    throw std::logic_error("a JSON value of no known type");
}

Json::Value parsed(const std::string& text)
{
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value value;
    std::string errors;
    if (!reader->parse(text.data(), text.data() + text.size(), &value, &errors)) {
        throw std::invalid_argument(errors + " in " + text);
    }
    return value;
}

} // namespace testsupport
