#include "host/study/Varied.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Distribution.h"
#include "host/design/Parameters.h"
#include "host/design/Place.h"

#include <fmt/format.h>

#include <cmath>
#include <cstdint>

namespace zelm::host {

Json plainJson(double value)
{
    constexpr double exactUpTo = 9007199254740992.0; // 2^53
    return std::fabs(value) < exactUpTo && value == std::floor(value) ? Json(static_cast<std::int64_t>(value))
                                                                      : Json(value);
}

void failVary(const std::string& variation, const std::string& message)
{
    throw Error(fmt::format("--vary {}: {}", abbreviated(variation, 200), message));
}

Json& variedPlace(Json& root, const std::string& path, const std::string& variation)
{
    try {
        return placeAt(root, path);
    } catch (const Error& error) {
        failVary(variation, error.what());
    }
}

std::optional<double> variedNumber(const std::string& text, std::string& unit, const std::string& variation)
{
    try {
        const auto written = writtenQuantity(text);
        if (!written)
            return plainNumber(text);
        if (unit.empty())
            unit = written->unit->symbol;
        return inUnit(*written, unit);
    } catch (const Error& error) {
        failVary(variation, error.what());
    }
}

std::string writtenUnit(const Json& value)
{
    if (isDistribution(value))
        return writtenUnitOf(value);
    const auto* text = value.get_ptr<const std::string*>();
    return text ? writtenUnitIn(*text) : std::string();
}

bool takesWords(const Json& value, const std::string& path)
{
    if (isDistribution(value) && value.contains("values") && value["values"].is_array() && !value["values"].empty())
        return takesWords(value["values"].front(), path);
    const auto* text = value.get_ptr<const std::string*>();
    return path.starts_with("device.") || (text && !isExpression(*text) && writtenUnit(value).empty());
}

Json withUnit(const Json& value, const std::string& unit)
{
    return unit.empty() || value.is_string() ? value : Json(fmt::format("{} {}", compactJson(value), unit));
}

} // namespace zelm::host
