#include "host/design/Fields.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <utility>

namespace zelm::host {

namespace {

// A plain result fits wherever a plain number may stand.
double computed(const std::string& expression, const Place& where, std::string_view unit)
{
    const Reading& reading = where.reading();
    const Quantity quantity = reading.parameters.number(expression, reading.source.scopesOf(where.path()));
    if (quantity.dimension == kPlain)
        return quantity.value;
    if (quantity.dimension != host::unit(unit).dimension)
        throw Error(fmt::format("\"{}\" is {}, expected {}", abbreviated(expression),
                                dimensionWords(quantity.dimension), expectedWords(unit)));
    return inUnit(quantity, unit);
}

// Nothing if the value isn't written as a number can be.
std::optional<double> numberIn(const Json& value, const Place& where, std::string_view unit)
{
    if (value.is_number())
        return value.get<double>();
    const auto* text = value.get_ptr<const std::string*>();
    if (!text)
        return std::nullopt;
    try {
        if (isExpression(*text))
            return computed(*text, where, unit);
        if (const auto written = writtenQuantity(*text))
            return inUnit(*written, unit);
    } catch (const Error& error) {
        where.fail(error.what());
    }
    return std::nullopt;
}

// As it is written, and what it comes to where that doesn't show.
std::string withValue(const Json& value, double number)
{
    return value.is_string() ? fmt::format("{} ({:.10g})", quoted(value), number) : quoted(value);
}

bool isWithin(double number, const Range& range)
{
    return number >= range.least && number <= range.most;
}

std::string outsideText(const std::string& value, const Range& range)
{
    return fmt::format("{} is outside {} to {} {}", value, range.least, range.most,
                       range.words.empty() ? range.unit : range.words);
}

double within(const Json& value, double number, const Place& where, const Range& range)
{
    if (!isWithin(number, range))
        where.fail(outsideText(withValue(value, number), range));
    return number;
}

// Its numbers one by one, with the fields that they stand in.
template <class Check>
void checkNumbers(const Distribution& all, const Check& check)
{
    using Kind = Distribution::Kind;
    for (std::size_t i = 0; i < all.values.size(); ++i)
        check(fmt::format("values[{}]", i), std::get<double>(all.values[i]));
    if (all.kind == Kind::uniform || all.kind == Kind::triangular) {
        check("low", all.low);
        check("high", all.high);
    }
    if (all.kind == Kind::triangular || all.kind == Kind::normal)
        check(all.kind == Kind::normal ? "mean" : "mode", all.peak);
}

} // namespace

Place Place::field(const std::string& name) const
{
    if (m_path.empty())
        return {*m_reading, name};
    std::string path;
    path.reserve(m_path.size() + 1 + name.size()); // every input of a group has its place
    path.append(m_path).append(1, '.').append(name);
    return {*m_reading, std::move(path)};
}

Place Place::element(std::size_t index) const
{
    return {*m_reading, fmt::format("{}[{}]", m_path, index)};
}

std::string Place::say(const std::string& message) const
{
    return fmt::format("{}: {}", m_reading->source.at(m_path), message);
}

void Place::fail(const std::string& message) const
{
    throw Error(say(message));
}

void Place::fail(const BadDistribution& error) const
{
    (error.field.empty() ? *this : field(error.field)).fail(std::string(error.what()));
}

void Place::note(const Distribution& distribution) const
{
    if (m_reading->uncertain)
        m_reading->uncertain->push_back({m_path, distribution});
}

Fields::Fields(const Json& object, Place place) : m_object(&object), m_place(std::move(place))
{
    if (!object.is_object())
        m_place.fail(fmt::format("expected an object {{...}}, found {}", describe(object)));
}

std::string Fields::describe(const Json& value)
{
    return value.is_null() ? "null" : fmt::format("the {} {}", value.type_name(), quoted(value));
}

const Json* Fields::take(const std::string& name)
{
    m_known.push_back(name);
    const auto found = m_object->find(name);
    return found == m_object->end() ? nullptr : &*found;
}

Place Fields::place(const std::string& name) const
{
    return m_place.field(name);
}

std::string Fields::text(const std::string& name, const std::string& otherwise)
{
    const Json* value = take(name);
    if (!value)
        return otherwise;
    std::string given = text(*value, place(name));
    if (given.empty())
        place(name).fail("is empty; leave it out, or say something");
    return given;
}

std::string Fields::word(const std::string& name)
{
    const Json* value = take(name);
    if (!value)
        return "";
    std::string given = word(*value, place(name));
    if (given.empty())
        place(name).fail("is empty; leave it out, or say something");
    return given;
}

std::optional<double> Fields::number(const std::string& name, const Range& range)
{
    const Json* value = take(name);
    return value ? std::optional(number(*value, place(name), range)) : std::nullopt;
}

std::optional<double> Fields::whole(const std::string& name, const Range& range)
{
    const Json* value = take(name);
    return value ? std::optional(whole(*value, place(name), range)) : std::nullopt;
}

std::map<std::string, double> Fields::numbers(const std::string& name, const Range& range)
{
    const Json* object = take(name);
    return object ? numbers(*object, place(name), range) : std::map<std::string, double>();
}

std::map<std::string, double> Fields::numbers(const Json& object, const Place& where, const Range& range)
{
    if (!object.is_object())
        where.fail(fmt::format("expected an object {{...}}, found {}", describe(object)));
    std::map<std::string, double> values;
    for (const auto& [key, value] : object.items())
        values[key] = number(value, where.field(key), range);
    return values;
}

void Fields::refuseOthers() const
{
    for (const auto& [name, value] : m_object->items()) {
        if (std::find(m_known.begin(), m_known.end(), name) == m_known.end())
            place(name).fail(fmt::format("there is no field of this name here{}; known fields: {}",
                                         suggestion(name, m_known), fmt::join(m_known, ", ")));
    }
}

// Names and words go into every table and message: a limit keeps those readable.
std::string Fields::text(const Json& value, const Place& where)
{
    constexpr std::size_t most = 200;
    if (!value.is_string())
        where.fail(fmt::format("expected a text, found {}", describe(value)));
    auto text = value.get<std::string>();
    if (text.size() > most)
        where.fail(fmt::format("expected a text of at most {} characters, found {} of them: {}", most, text.size(),
                               quoted(value)));
    return text;
}

std::string Fields::word(const Json& value, const Place& where)
{
    if (isDistribution(value)) {
        const Distribution all = words(value, where);
        where.note(all);
        return std::get<std::string>(all.centre());
    }
    std::string word = text(value, where);
    if (!isExpression(word))
        return word;
    const Reading& reading = where.reading();
    try {
        return reading.parameters.word(word, reading.source.scopesOf(where.path()));
    } catch (const Error& error) {
        where.fail(fmt::format("\"{}\" {}", word, error.what()));
    }
}

Distribution Fields::distribution(const Json& value, const Place& where, const Range& range, bool isWhole)
{
    try {
        Distribution all = distributionOf(value, range.unit);
        if (all.takesWords())
            throw BadDistribution("values", fmt::format("expected numbers, found {}", quoted(value["values"])));
        all.isWhole = isWhole;
        checkNumbers(all, [&](const std::string& field, double number) {
            if (!isWithin(number, range))
                throw BadDistribution(field, outsideText(fmt::format("{}", number), range));
            if (isWhole && all.kind != Distribution::Kind::normal && number != std::round(number))
                throw BadDistribution(field, fmt::format("expected a whole number, found {}", number));
        });
        if (all.kind == Distribution::Kind::normal) {
            all.low = std::max(all.low, range.least);
            all.high = std::min(all.high, range.most);
        }
        return all;
    } catch (const BadDistribution& error) {
        where.fail(error);
    }
}

Distribution Fields::words(const Json& value, const Place& where)
{
    try {
        return distributionOfWords(value);
    } catch (const BadDistribution& error) {
        where.fail(error);
    }
}

double Fields::number(const Json& value, const Place& where, const Range& range)
{
    if (isDistribution(value)) {
        const Distribution all = distribution(value, where, range, false);
        where.note(all);
        return std::get<double>(all.centre());
    }
    const std::optional<double> number = numberIn(value, where, range.unit);
    if (!number)
        where.fail(fmt::format("expected a number, found {}", describe(value)));
    return within(value, *number, where, range);
}

double Fields::whole(const Json& value, const Place& where, const Range& range)
{
    if (isDistribution(value)) {
        const Distribution all = distribution(value, where, range, true);
        where.note(all);
        return std::get<double>(all.centre());
    }
    const std::optional<double> number = numberIn(value, where, range.unit);
    if (!number)
        where.fail(fmt::format("expected a whole number, found {}", describe(value)));
    const double nearest = std::round(*number);
    // What is written is taken as it stands; a computation may be off by its last bits.
    constexpr double bits = 1e-12;
    const double tolerance = value.is_string() ? bits * std::fabs(nearest) : 0.0;
    if (!(std::fabs(*number - nearest) <= tolerance))
        where.fail(value.is_string() ? fmt::format("expected a whole number, {} is {:.10g}", quoted(value), *number)
                                     : fmt::format("expected a whole number, found {}", describe(value)));
    return within(value, nearest, where, range);
}

} // namespace zelm::host
