#include "host/base/Json.h"

#include "host/base/Text.h"

#include <fmt/format.h>

#include <cmath>

namespace zelm::host {

std::string jsonText(const Json& json)
{
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string compactJson(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string quoted(const Json& json)
{
    if (const auto* text = json.get_ptr<const std::string*>())
        return compactJson(abbreviated(*text));
    constexpr std::size_t few = 60; // no more would be shown, and to write all out takes time
    return json.is_structured() && json.size() > few ? fmt::format("of {} elements", json.size())
                                                     : abbreviated(compactJson(json));
}

double shortest(float value)
{
    return std::isfinite(value) ? std::stod(exactText(value)) : static_cast<double>(value);
}

void addNumber(Json& object, const std::string& name, double value)
{
    if (std::isfinite(value)) {
        object[name] = value;
        return;
    }
    object[name] = nullptr;
    object[name + "Reason"] = std::isnan(value) ? "not a number" : "infinite";
}

} // namespace zelm::host
