#include "host/design/Parameters.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/JsonSource.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>
#include <muParser.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <memory>
#include <optional>
#include <utility>

namespace zelm::host {

namespace {

constexpr std::size_t kMostParameters = 10000;
constexpr std::size_t kLongestExpression = 1000;
constexpr std::size_t kDeepestParameters = 64; // that stand on each other

using Scales = std::array<double, std::tuple_size_v<Dimension>>;
constexpr Scales kUnscaled{1.0, 1.0, 1.0, 1.0, 1.0};

// The size of base units during an evaluation: what an expression's result does when they change tells its dimension.
thread_local Scales g_scales = kUnscaled; // NOLINT(cppcoreguidelines-avoid-non-const-global-variables)

double scaledBy(const Scales& scales, const Dimension& dimension)
{
    double factor = 1.0;
    for (std::size_t i = 0; i < dimension.size(); ++i) {
        for (int power = dimension.at(i); power != 0; power += power > 0 ? -1 : 1)
            factor = power > 0 ? factor * scales.at(i) : factor / scales.at(i);
    }
    return factor;
}

// "10 MHz" in an expression: the parser takes operators behind a value as plain functions, one for each unit.
template <std::size_t Index>
double ofUnit(double value)
{
    const Unit& unit = units()[Index];
    const Quantity one = quantityOf({"1", &unit});
    const double number = unit.exponent < 0 && unit.factor == 1.0
                              ? value / std::pow(10.0, -unit.exponent) // one rounding: 850 mV is 0.85 V
                              : value * one.value;
    return number * scaledBy(g_scales, unit.dimension);
}

template <std::size_t... Indices>
void defineUnits(mu::Parser& parser, std::index_sequence<Indices...>)
{
    constexpr bool foldConstants = false; // their scale changes
    (parser.DefinePostfixOprt(std::string(units()[Indices].symbol), ofUnit<Indices>, foldConstants), ...);
}

// An Error that tells its place already.
struct PlacedError : Error {
    using Error::Error;
};

using LookUp = std::function<Quantity(const std::string& name)>;

// Evaluates expressions with their dimensions.
class Calculator {
public:
    Calculator()
    {
        m_parser.SetArgSep(',');
        setSeparators();
        defineUnits(m_parser, std::make_index_sequence<kUnitCount - 1>()); // the last has no symbol
        m_parser.SetVarFactory(operand, this);
    }

    Quantity evaluate(const std::string& text, const LookUp& lookUp)
    {
        m_lookUp = &lookUp;
        m_operands.clear();
        m_parser.ClearVar();
        m_parser.SetExpr(text);
        const double value = valueAt(kUnscaled);
        if (m_parser.GetNumResults() != 1)
            throw Error("has more than one value; arguments of functions stand in parentheses");
        if (!std::isfinite(value))
            throw Error("is no finite number: it divides by zero, or takes a function outside its domain");
        Quantity result{value, kPlain};
        for (std::size_t i = 0; i < result.dimension.size(); ++i)
            result.dimension.at(i) = powerOf(i, value);
        return result;
    }

    std::vector<std::string> functions() const
    {
        std::vector<std::string> names;
        for (const auto& [name, function] : m_parser.GetFunDef())
            names.push_back(name);
        return names;
    }

private:
    struct Operand {
        Quantity quantity;
        double scaled = 0.0;
    };

    static double* operand(const char* name, void* self)
    {
        auto& calculator = *static_cast<Calculator*>(self);
        const Quantity quantity = (*calculator.m_lookUp)(name);
        calculator.m_operands.push_back({quantity, quantity.value});
        return &calculator.m_operands.back().scaled;
    }

    double valueAt(const Scales& scales)
    {
        g_scales = scales;
        for (Operand& operand : m_operands)
            operand.scaled = operand.quantity.value * scaledBy(scales, operand.quantity.dimension);
        const double value = m_parser.Eval();
        g_scales = kUnscaled;
        return value;
    }

    // With a base unit made larger and smaller by a power of two, which is exact, a result of one dimension follows by
    // a power of that; any other adds, compares or takes the function of what has different units.
    int powerOf(std::size_t base, double value)
    {
        constexpr int steps = 120; // far enough for what is compared to change its order
        const auto follows = [&](int exponent) -> std::optional<int> {
            Scales scales = kUnscaled;
            scales.at(base) = std::ldexp(1.0, exponent);
            const double other = valueAt(scales);
            if (other == value)
                return 0;
            int power = 0;
            const bool exact = value != 0.0 && std::frexp(other / value, &power) == 0.5;
            return exact && (power - 1) % exponent == 0 ? std::optional((power - 1) / exponent) : std::nullopt;
        };
        const std::optional<int> up = follows(steps);
        const std::optional<int> down = follows(-steps);
        constexpr int most = 20;
        if (!up || up != down || std::abs(*up) > most)
            throw Error("mixes units: it adds, compares or takes the function of what doesn't count in the same");
        return *up;
    }

    // All parsers share one locale: once is enough, and again while another thread reads it would be a crash.
    void setSeparators()
    {
        static const bool set = [this] {
            m_parser.SetDecSep('.');
            m_parser.SetThousandsSep();
            return true;
        }();
        static_cast<void>(set);
    }

    mu::Parser m_parser;
    std::deque<Operand> m_operands; // the parser points at them
    const LookUp* m_lookUp = nullptr;
};

// A calculator costs more than an evaluation, and a parameter may be looked up within the evaluation of another.
class Borrowed {
public:
    Borrowed()
    {
        if (idle().empty())
            idle().push_back(std::make_unique<Calculator>());
        m_calculator = std::move(idle().back());
        idle().pop_back();
    }
    ~Borrowed()
    {
        idle().push_back(std::move(m_calculator));
    }
    Borrowed(const Borrowed&) = delete;
    Borrowed& operator=(const Borrowed&) = delete;

    Calculator* operator->() const
    {
        return m_calculator.get();
    }

private:
    static std::vector<std::unique_ptr<Calculator>>& idle()
    {
        thread_local std::vector<std::unique_ptr<Calculator>> calculators;
        return calculators;
    }

    std::unique_ptr<Calculator> m_calculator;
};

std::string_view withoutSpaces(std::string_view text)
{
    const std::size_t first = std::min(text.find_first_not_of(" \t\r\n"), text.size());
    const std::size_t last = text.find_last_not_of(" \t\r\n");
    return text.substr(first, last == std::string_view::npos ? 0 : last + 1 - first);
}

// What stands behind the sign of equality.
std::string bodyOf(std::string_view expression)
{
    return std::string(withoutSpaces(withoutSpaces(expression).substr(1)));
}

// The parser knows assignments, which no value is.
bool assigns(std::string_view text)
{
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '=')
            continue;
        if (i + 1 < text.size() && text[i + 1] == '=')
            ++i;
        else if (i == 0 || std::string_view("<>!").find(text[i - 1]) == std::string_view::npos)
            return true;
    }
    return false;
}

bool isName(std::string_view text)
{
    constexpr std::string_view letters = "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_";
    return !text.empty() && letters.find(text.front()) != std::string_view::npos &&
           std::all_of(text.begin(), text.end(),
                       [&](char c) { return letters.find(c) != std::string_view::npos || (c >= '0' && c <= '9'); });
}

std::string wordsOf(const mu::Parser::exception_type& error)
{
    // A name behind a value is where a unit stands.
    if (error.GetCode() == mu::ecUNEXPECTED_VAR) {
        try {
            unit(error.GetToken());
        } catch (const Error& unknown) {
            return fmt::format("is no expression: {}", unknown.what());
        }
    }
    return fmt::format("is no expression: {}", abbreviated(error.GetMsg(), 200));
}

Quantity evaluated(const std::string& expression, const LookUp& lookUp)
{
    const auto said = [&](const std::string& what) { return fmt::format("\"{}\" {}", abbreviated(expression), what); };
    const std::string body = bodyOf(expression);
    if (body.empty())
        throw Error(said("has nothing behind its ="));
    if (body.size() > kLongestExpression)
        throw Error(said(fmt::format("has {} characters, at most {} are read", body.size(), kLongestExpression)));
    if (assigns(body))
        throw Error(said("assigns; equality is written =="));
    try {
        return Borrowed()->evaluate(body, lookUp);
    } catch (const PlacedError&) {
        throw;
    } catch (const mu::Parser::exception_type& error) {
        throw Error(said(wordsOf(error)));
    } catch (const Error& error) {
        throw Error(said(error.what()));
    }
}

using Scopes = std::vector<std::string>;

// What an expression's names are looked up in: the names of the nearest scope stand before the others.
template <class Map>
auto findIn(Map& map, const Scopes& scopes, const std::string& name)
{
    for (const std::string& scope : scopes) {
        if (const auto own = map.find(scope + name); own != map.end())
            return own;
    }
    return map.find(name);
}

template <class Map>
[[noreturn]] void failUnknown(const Map& map, const Scopes& scopes, const std::string& name)
{
    std::vector<std::string> known;
    for (const auto& entry : map) {
        const std::string& other = entry.first;
        const auto scope =
            std::find_if(scopes.begin(), scopes.end(), [&](const std::string& s) { return other.starts_with(s); });
        known.push_back(scope == scopes.end() ? other : other.substr(scope->size()));
    }
    std::string nearest = suggestion(name, known);
    if (nearest.empty())
        nearest = suggestion(name, Borrowed()->functions());
    throw Error(fmt::format("names {}, and there is no such parameter{}", abbreviated(name), nearest));
}

Quantity asNumber(const std::string& name, const Parameters::Value& value)
{
    if (const auto* word = std::get_if<std::string>(&value))
        throw Error(fmt::format("computes with {}, which is the word \"{}\"", name, abbreviated(*word)));
    return std::get<Quantity>(value);
}

// Computes parameters, each once, with those that it stands on.
class Resolver {
public:
    Resolver(const Json& object, const JsonSource& source) : m_object(&object), m_source(&source)
    {
        for (const auto& [name, value] : object.items())
            m_written.emplace(name, &value);
    }

    std::map<std::string, Parameters::Value, std::less<>> all()
    {
        for (const auto& [name, value] : m_object->items())
            valueOf(name);
        return std::move(m_values);
    }

    std::vector<Uncertain> uncertain()
    {
        return std::move(m_uncertain);
    }

private:
    std::string placeOf(const std::string& name) const
    {
        return "parameters." + name;
    }

    [[noreturn]] void fail(const std::string& name, const std::string& message) const
    {
        throw PlacedError(fmt::format("{}: {}", m_source->at(placeOf(name)), message));
    }

    const Parameters::Value& valueOf(const std::string& name)
    {
        if (const auto known = m_values.find(name); known != m_values.end())
            return known->second;
        const auto before = std::find(m_open.begin(), m_open.end(), name);
        if (before != m_open.end())
            fail(name, fmt::format("stands on itself: {} -> {}", fmt::join(before, m_open.end(), " -> "), name));
        if (m_open.size() == kDeepestParameters)
            fail(name, fmt::format("more than {} parameters stand on each other", kDeepestParameters));
        m_open.push_back(name);
        Parameters::Value value = read(name, *m_written.at(name));
        m_open.pop_back();
        return m_values.emplace(name, std::move(value)).first->second;
    }

    Parameters::Value read(const std::string& name, const Json& written)
    {
        if (!isName(name))
            fail(name, "a parameter's name has letters, digits and _, and begins with no digit");
        if (findUnit(name))
            fail(name, fmt::format("{} is a unit; choose another name", name));
        const std::vector<std::string> functions = Borrowed()->functions();
        if (std::find(functions.begin(), functions.end(), name) != functions.end())
            fail(name, fmt::format("{} is a function; choose another name", name));
        if (written.is_number())
            return Quantity{written.get<double>(), kPlain};
        if (isDistribution(written))
            return readDistribution(name, written);
        if (!written.is_string())
            fail(name, fmt::format("expected a number, a text with a unit, an expression or a word, found the {} {}",
                                   written.type_name(), quoted(written)));
        return readText(name, written.get<std::string>());
    }

    Parameters::Value readDistribution(const std::string& name, const Json& written)
    {
        try {
            const Distribution all = distributionOf(written, std::nullopt);
            m_uncertain.push_back({placeOf(name), all});
            const Distribution::Value centre = all.centre();
            if (const auto* word = std::get_if<std::string>(&centre))
                return *word;
            const std::string number = fmt::format("{}", std::get<double>(centre));
            return quantityOf({number, &unit(all.unit)});
        } catch (const BadDistribution& error) {
            fail(error.field.empty() ? name : fmt::format("{}.{}", name, error.field), error.what());
        }
    }

    Parameters::Value readText(const std::string& name, const std::string& text)
    {
        // The scope is that of the file in which the parameter stands.
        const Scopes scopes = m_source->scopesOf(placeOf(name));
        const LookUp lookUp = [&](const std::string& other) -> Quantity {
            const auto found = findIn(m_written, scopes, other);
            if (found == m_written.end())
                failUnknown(m_written, scopes, other);
            return asNumber(other, valueOf(found->first));
        };
        try {
            if (isExpression(text)) {
                const auto alias = findIn(m_written, scopes, bodyOf(text));
                return alias == m_written.end() ? evaluated(text, lookUp) : valueOf(alias->first);
            }
            if (const auto written = writtenQuantity(text))
                return quantityOf(*written);
        } catch (const PlacedError&) {
            throw;
        } catch (const Error& error) {
            fail(name, error.what());
        }
        return text;
    }

    const Json* m_object;
    const JsonSource* m_source;
    std::map<std::string, const Json*, std::less<>> m_written;
    std::map<std::string, Parameters::Value, std::less<>> m_values;
    std::vector<std::string> m_open;
    std::vector<Uncertain> m_uncertain;
};

} // namespace

bool isExpression(std::string_view text)
{
    return withoutSpaces(text).starts_with('=');
}

Parameters::Parameters(const Json& object, const JsonSource& source)
{
    if (!object.is_object())
        throw Error(fmt::format("{}: expected an object {{...}}, found the {} {}", source.at("parameters"),
                                object.type_name(), quoted(object)));
    if (object.size() > kMostParameters)
        throw Error(fmt::format("{}: more than {} parameters", source.at("parameters"), kMostParameters));
    Resolver resolver(object, source);
    m_values = resolver.all();
    m_uncertain = resolver.uncertain();
}

Quantity Parameters::number(const std::string& expression, const Scopes& scopes) const
{
    return evaluated(expression, [&](const std::string& name) {
        const auto found = findIn(m_values, scopes, name);
        if (found == m_values.end())
            failUnknown(m_values, scopes, name);
        return asNumber(name, found->second);
    });
}

std::string Parameters::word(const std::string& expression, const Scopes& scopes) const
{
    const std::string name = bodyOf(expression);
    const auto found = findIn(m_values, scopes, name);
    if (found == m_values.end())
        failUnknown(m_values, scopes, name);
    if (const auto* word = std::get_if<std::string>(&found->second))
        return *word;
    throw Error(fmt::format("names {}, which is a number and no word", abbreviated(name)));
}

} // namespace zelm::host
