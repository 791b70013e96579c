#include "host/base/Json.h"

#include "host/base/Text.h"

#include <cmath>

namespace zelm::host {

std::string jsonText(const Json& json)
{
    return json.dump(2) + "\n";
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
