#include "host/design/Distribution.h"

#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/design/Parameters.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <numeric>

namespace zelm::host {

namespace {

constexpr std::size_t kMostValues = 1000;

// Reads the fields of one distribution, whose numbers all count in one unit.
class DistributionReader {
public:
    DistributionReader(const Json& object, const std::optional<std::string_view>& unit, bool areWords = false)
        : m_object(&object), m_areWords(areWords)
    {
        const std::string written = writtenUnitOf(object);
        if (unit || !written.empty())
            m_unit = unit.value_or(written);
        m_hasUnits = !written.empty();
    }

    Distribution read()
    {
        Distribution result;
        result.unit = m_unit;
        if (m_object->contains("values"))
            readDiscrete(result);
        else if (m_object->contains("mean") || m_object->contains("sd"))
            readNormal(result);
        else
            readBetweenEnds(result);
        return result;
    }

private:
    [[noreturn]] static void fail(const std::string& field, const std::string& message)
    {
        throw BadDistribution(field, message);
    }

    void allowOnly(const std::vector<std::string>& known) const
    {
        for (const auto& [name, value] : m_object->items()) {
            if (std::find(known.begin(), known.end(), name) == known.end())
                fail(name, fmt::format("there is no field of this name in such a distribution{}; known fields: {}",
                                       suggestion(name, known), fmt::join(known, ", ")));
        }
    }

    const Json& needed(const std::string& name, const char* form) const
    {
        const auto found = m_object->find(name);
        if (found == m_object->end())
            fail("", fmt::format("a distribution lacks its \"{}\": {}", name, form));
        return *found;
    }

    double number(const std::string& field, const Json& value) const
    {
        if (value.is_number() && !m_hasUnits)
            return value.get<double>();
        const auto* text = value.get_ptr<const std::string*>();
        if (text && isExpression(*text))
            fail(field, "numbers of a distribution stand as they are: let a parameter be the distribution, and an "
                        "expression take that");
        try {
            if (const auto written = text ? writtenQuantity(*text) : std::nullopt) {
                const double amount = inUnit(*written, m_unit);
                if (std::isfinite(amount))
                    return amount;
                fail(field, fmt::format("the number {} is too large", abbreviated(*text)));
            }
        } catch (const BadDistribution&) {
            throw;
        } catch (const Error& error) {
            fail(field, error.what());
        }
        if (value.is_number())
            fail(field, fmt::format("{} has no unit where others of the distribution have one", quoted(value)));
        fail(field, fmt::format("expected a number, found the {} {}", value.type_name(), quoted(value)));
    }

    double number(const std::string& field) const
    {
        return number(field, m_object->at(field));
    }

    void readEnds(Distribution& result) const
    {
        if (m_object->contains("low"))
            result.low = number("low");
        if (m_object->contains("high"))
            result.high = number("high");
        if (result.low > result.high)
            fail("low", fmt::format("{} is above high, {}", result.low, result.high));
    }

    void readBetweenEnds(Distribution& result) const
    {
        allowOnly({"low", "mode", "high", "mean", "sd", "values", "weights"});
        constexpr const char* form =
            "expected {\"low\", \"high\"}, {\"low\", \"mode\", \"high\"}, {\"mean\", \"sd\"} or "
            "{\"values\", \"weights\"}";
        needed("low", form);
        needed("high", form);
        if (m_object->contains("weights"))
            fail("weights", "weights are those of \"values\", of which there are none");
        readEnds(result);
        result.peak = std::midpoint(result.low, result.high);
        if (!m_object->contains("mode"))
            return;
        result.kind = Distribution::Kind::triangular;
        result.peak = number("mode");
        if (!(result.peak >= result.low && result.peak <= result.high))
            fail("mode", fmt::format("{} is outside low to high, {} to {}", result.peak, result.low, result.high));
    }

    void readNormal(Distribution& result) const
    {
        allowOnly({"mean", "sd", "low", "high"});
        constexpr const char* form = "expected {\"mean\", \"sd\"}, with \"low\" and \"high\" where it is cut";
        needed("mean", form);
        needed("sd", form);
        result.kind = Distribution::Kind::normal;
        result.peak = number("mean");
        result.sd = number("sd");
        if (!(result.sd > 0.0))
            fail("sd", fmt::format("expected a standard deviation above 0, found {}", result.sd));
        readEnds(result);
        if (!(result.peak >= result.low && result.peak <= result.high))
            fail("mean", fmt::format("{} is outside low to high, {} to {}", result.peak, result.low, result.high));
    }

    void readDiscrete(Distribution& result)
    {
        allowOnly({"values", "weights"});
        result.kind = Distribution::Kind::discrete;
        const Json& values = m_object->at("values");
        if (!values.is_array() || values.empty())
            fail("values", fmt::format("expected a list of what the value may be, found {}", quoted(values)));
        if (values.size() > kMostValues)
            fail("values", fmt::format("{} values are too many: at most {}", values.size(), kMostValues));
        for (std::size_t i = 0; i < values.size(); ++i)
            result.values.push_back(discreteValue(fmt::format("values[{}]", i), values[i]));
        const auto isWord = [](const Distribution::Value& value) { return value.index() == 1; };
        const auto words = std::count_if(result.values.begin(), result.values.end(), isWord);
        if (words != 0 && static_cast<std::size_t>(words) != values.size())
            fail("values", fmt::format("{} has both numbers and words", quoted(values)));
        if (words != 0)
            result.unit.clear();
        readWeights(result);
    }

    Distribution::Value discreteValue(const std::string& field, const Json& value) const
    {
        const auto* text = value.get_ptr<const std::string*>();
        if (text && m_areWords)
            return *text;
        bool isWord = false;
        try {
            isWord = text && !isExpression(*text) && !writtenQuantity(*text);
        } catch (const Error&) {
            isWord = true; // that begins with a number
        }
        if (isWord)
            return *text;
        return number(field, value);
    }

    void readWeights(Distribution& result) const
    {
        const auto found = m_object->find("weights");
        result.weights.assign(result.values.size(), 1.0);
        if (found == m_object->end())
            return;
        if (!found->is_array() || found->size() != result.values.size())
            fail("weights",
                 fmt::format("expected {} weights, one of each value, found {}", result.values.size(), quoted(*found)));
        double sum = 0.0;
        for (std::size_t i = 0; i < found->size(); ++i) {
            const Json& weight = (*found)[i];
            const std::string field = fmt::format("weights[{}]", i);
            if (!weight.is_number() || !(weight.get<double>() >= 0.0))
                fail(field, fmt::format("expected a weight from 0, found {}", quoted(weight)));
            result.weights[i] = weight.get<double>();
            sum += result.weights[i];
        }
        if (!(sum > 0.0 && std::isfinite(sum)))
            fail("weights", sum > 0.0 ? "their sum is too large" : "the weights are all 0: no value is left");
    }

    const Json* m_object;
    bool m_areWords;
    std::string m_unit;
    bool m_hasUnits = false;
};

std::string valueWord(const Distribution::Value& value)
{
    const auto* word = std::get_if<std::string>(&value);
    return word ? *word : fmt::format("{:.6g}", std::get<double>(value));
}

} // namespace

Distribution::Value Distribution::centre() const
{
    if (kind == Kind::discrete)
        return values[static_cast<std::size_t>(std::max_element(weights.begin(), weights.end()) - weights.begin())];
    return isWhole ? std::round(peak) : peak;
}

std::string Distribution::text() const
{
    const std::string behind = unit.empty() ? "" : " " + unit;
    switch (kind) {
    case Kind::uniform:
        return fmt::format("{:.6g} to {:.6g}{}", low, high, behind);
    case Kind::triangular:
        return fmt::format("{:.6g} to {:.6g}{}, mode {:.6g}", low, high, behind, peak);
    case Kind::normal:
        return fmt::format("{:.6g}{}, sd {:.6g}", peak, behind, sd);
    case Kind::discrete:
        break;
    }
    const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
    std::vector<std::string> all;
    for (std::size_t i = 0; i < values.size(); ++i)
        all.push_back(fmt::format("{}{} ({:.3g} %)", valueWord(values[i]), behind, 100.0 * weights[i] / sum));
    return orList(all);
}

std::string Distribution::centreText() const
{
    const std::string behind = unit.empty() ? "" : " " + unit;
    switch (kind) {
    case Kind::uniform:
        return fmt::format("middle of {}", text());
    case Kind::triangular:
        return fmt::format("mode of {:.6g} to {:.6g}{}", low, high, behind);
    case Kind::normal:
        return fmt::format("mean of {}", text());
    case Kind::discrete:
        break;
    }
    constexpr std::size_t most = 80;
    return abbreviated(fmt::format("heaviest of {}", text()), most);
}

bool isDistribution(const Json& value)
{
    return value.is_object();
}

Distribution distributionOf(const Json& value, const std::optional<std::string_view>& unit)
{
    if (!value.is_object())
        throw BadDistribution("", "expected an object {...}");
    return DistributionReader(value, unit).read();
}

Distribution distributionOfWords(const Json& value)
{
    const auto values = value.find("values");
    const bool isOfTexts = values != value.end() && values->is_array() && !values->empty() &&
                           std::all_of(values->begin(), values->end(), [](const Json& v) { return v.is_string(); });
    if (!isOfTexts)
        throw BadDistribution(values == value.end() ? "" : "values",
                              fmt::format("expected words, {{\"values\": [...]}}, found {}", quoted(value)));
    return DistributionReader(value, std::nullopt, true).read();
}

std::string writtenUnitOf(const Json& distribution)
{
    for (const auto& [name, field] : distribution.items()) {
        const Json& first = field.is_array() && !field.empty() ? field.front() : field;
        const auto* text = first.get_ptr<const std::string*>();
        if (std::string unit = text ? writtenUnitIn(*text) : std::string(); !unit.empty())
            return unit;
    }
    return {};
}

bool holdsDistribution(const Json& value)
{
    try {
        distributionOf(value, std::nullopt);
        return true;
    } catch (const BadDistribution&) {
        return false;
    }
}

} // namespace zelm::host
