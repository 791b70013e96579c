#include "host/design/Fields.h"

#include "host/base/Error.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>

namespace zelm::host {

Place Place::field(const std::string& name) const
{
    return {*m_source, m_path.empty() ? name : m_path + "." + name};
}

Place Place::element(std::size_t index) const
{
    return {*m_source, fmt::format("{}[{}]", m_path, index)};
}

std::string Place::say(const std::string& message) const
{
    return fmt::format("{}: {}", m_source->at(m_path), message);
}

void Place::fail(const std::string& message) const
{
    throw Error(say(message));
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
    return text(*value, place(name));
}

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

std::optional<double> Fields::number(const std::string& name, double least, double most, const char* unit)
{
    const Json* value = take(name);
    if (!value)
        return std::nullopt;
    return number(*value, place(name), least, most, unit);
}

double Fields::number(const Json& value, const Place& where, double least, double most, const char* unit)
{
    if (!value.is_number())
        where.fail(fmt::format("expected a number, found {}", describe(value)));
    const double number = value.get<double>();
    if (!(number >= least && number <= most))
        where.fail(fmt::format("{} is outside {} to {} {}", quoted(value), least, most, unit));
    return number;
}

std::map<std::string, double> Fields::numbers(const std::string& name, double least, double most, const char* unit)
{
    std::map<std::string, double> values;
    if (const Json* object = take(name)) {
        if (!object->is_object())
            place(name).fail(fmt::format("expected an object {{...}}, found {}", describe(*object)));
        for (const auto& [key, value] : object->items())
            values[key] = number(value, place(name).field(key), least, most, unit);
    }
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

} // namespace zelm::host
