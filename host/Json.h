#pragma once

#include "host/Block.h"
#include "host/JsonFwd.h"
#include "host/Text.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace zelm::host {

/// The double with the shortest text that reads back as the same float: 0.72 and not 0.7200000286102295.
inline double shortest(float value)
{
    return std::isfinite(value) ? std::stod(exactText(value)) : static_cast<double>(value);
}

/// A number as JSON; what JSON can't hold is null with a reason beside it.
inline void addNumber(Json& object, const std::string& name, double value)
{
    if (std::isfinite(value)) {
        object[name] = value;
        return;
    }
    object[name] = nullptr;
    object[name + "Reason"] = std::isnan(value) ? "not a number" : "infinite";
}

inline void addValue(Json& object, const std::string& name, const Value& value)
{
    if (const int* whole = std::get_if<int>(&value)) {
        object[name] = *whole;
    } else if (const float* real = std::get_if<float>(&value)) {
        addNumber(object, name, shortest(*real));
    } else if (const std::string* text = std::get_if<std::string>(&value)) {
        object[name] = *text;
    } else {
        object[name] = nullptr;
        object[name + "Reason"] = "unset";
    }
}

} // namespace zelm::host
