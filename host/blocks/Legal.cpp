#include "host/blocks/Legal.h"

#include "host/base/Error.h"
#include "host/base/Text.h"

#include "framework/ZelmUnset.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <mutex>
#include <set>
#include <tuple>
#include <utility>

namespace zelm::host {

namespace {

using zelm::Destination;
using zelm::Legal;

std::vector<std::string> listed(std::string_view words)
{
    return words.empty() ? std::vector<std::string>() : split(std::string(words), '|');
}

// The keys that fit the last part of a chain, below all that fit the parts before it: "*" is any key, and {} the word.
void addKeys(const Block& block, std::vector<std::string> above, const std::vector<std::string>& chain,
             std::set<std::string>& words)
{
    const std::string& part = chain[above.size()];
    const std::size_t word = part.find("{}");
    if (word == std::string::npos && part != "*") {
        above.push_back(part);
        addKeys(block, std::move(above), chain, words);
        return;
    }
    const std::string prefix = word == std::string::npos ? "" : part.substr(0, word);
    const std::string suffix = word == std::string::npos ? "" : part.substr(word + 2);
    for (const std::string& key : block.keys(above, false)) {
        if (word == std::string::npos) {
            std::vector<std::string> next = above;
            next.push_back(key);
            addKeys(block, std::move(next), chain, words);
        } else if (key.size() >= prefix.size() + suffix.size() && key.starts_with(prefix) && key.ends_with(suffix))
            words.insert(key.substr(prefix.size(), key.size() - prefix.size() - suffix.size()));
    }
}

std::vector<std::string> findKeys(const Block& block, const Legal& legal)
{
    std::set<std::string> words;
    for (const std::string& text : listed(legal.text)) {
        std::vector<std::string> chain = split(text, '/');
        if (text.find("{}") == std::string::npos)
            chain.emplace_back("{}");
        addKeys(block, {}, chain, words);
    }
    for (const std::string& known : listed(legal.known))
        words.insert(known);
    for (const std::string& barred : listed(legal.barred))
        words.erase(barred);
    return {words.begin(), words.end()};
}

// The keys that cells may hold, in order: found once for each load of the data, for the reading of a design asks again
// and again.
struct KnownKeys {
    struct OfCells {
        unsigned loads = 0;
        std::vector<std::string> words;
    };
    template <class Text>
    using Question = std::tuple<const Block*, Text, Text, Text>;

    struct Before {
        using is_transparent = void;

        template <class A, class B>
        bool operator()(const A& a, const B& b) const
        {
            return asked(a) < asked(b);
        }
        template <class Text>
        static Question<std::string_view> asked(const Question<Text>& question)
        {
            return question;
        }
    };

    std::mutex mutex;
    std::map<Question<std::string>, OfCells, Before> all;
};

KnownKeys& knownKeys()
{
    static KnownKeys known;
    return known;
}

template <class Visit>
auto withKeysOf(const Block& block, const ZelmCellInfo& cell, Visit visit)
{
    block.load();
    KnownKeys& known = knownKeys();
    const std::lock_guard lock(known.mutex);
    const Legal& legal = cell.legal;
    auto found = known.all.find(KnownKeys::Question<std::string_view>{&block, legal.text, legal.known, legal.barred});
    if (found == known.all.end())
        found = known.all
                    .try_emplace({&block, std::string(legal.text), std::string(legal.known), std::string(legal.barred)})
                    .first;
    KnownKeys::OfCells& own = found->second;
    if (own.loads != block.loads())
        own = {block.loads(), findKeys(block, legal)};
    return visit(std::as_const(own.words));
}

// Whether a text is one of the words between bars.
bool isListed(std::string_view words, std::string_view text)
{
    while (true) {
        const std::size_t end = std::min(words.find('|'), words.size());
        if (words.substr(0, end) == text)
            return true;
        if (end == words.size())
            return false;
        words.remove_prefix(end + 1);
    }
}

bool isLegalWord(const Block& block, const ZelmCellInfo& cell, const std::string& text)
{
    switch (cell.legal.kind) {
    case Legal::Kind::words:
        return cell.legal.text.empty() || isListed(cell.legal.text, text);
    case Legal::Kind::keys:
        return withKeysOf(block, cell, [&](const std::vector<std::string>& words) {
            return words.empty() || std::binary_search(words.begin(), words.end(), text);
        });
    case Legal::Kind::number:
    case Legal::Kind::text:
        break;
    }
    return true;
}

std::string numberText(double number)
{
    return number == std::floor(number) ? fmt::format("{:.0f}", number) : fmt::format("{:.6g}", number);
}

// Rates have no end in their rows. Beyond a few times the fastest link there is, the unit is most likely another.
double usualHighest(const ZelmCellInfo& cell)
{
    constexpr struct {
        std::string_view unit;
        double most;
    } kRates[] = {{"Gb/s", 1e3}, {"Mb/s", 1e5}, {"MB/s", 1e6}};
    if (std::isfinite(cell.legal.usualHighest))
        return cell.legal.usualHighest;
    for (const auto& rate : kRates) {
        if (cell.unit == rate.unit)
            return rate.most;
    }
    return cell.legal.usualHighest;
}

std::string domainText(const ZelmCellInfo& cell)
{
    const Legal& legal = cell.legal;
    if (!legal.text.empty())
        return orList(listed(legal.text));
    std::string usual;
    if (const double most = usualHighest(cell); std::isfinite(most) && !std::isfinite(legal.highest))
        usual = fmt::format(", usually up to {}", numberText(most));
    if (std::isfinite(legal.lowest) && std::isfinite(legal.highest))
        return fmt::format("{} to {}", numberText(legal.lowest), numberText(legal.highest));
    if (legal.lowest == zelm::legal::aboveZero.lowest)
        return "above 0" + usual;
    if (std::isfinite(legal.lowest))
        return "from " + numberText(legal.lowest) + usual;
    return "any" + usual;
}

double numberOf(const Value& value)
{
    if (const int* whole = std::get_if<int>(&value))
        return *whole;
    if (const float* real = std::get_if<float>(&value))
        return static_cast<double>(*real);
    return std::nan("");
}

} // namespace

std::vector<std::string> legalWords(const Block& block, const ZelmCellInfo& cell)
{
    switch (cell.legal.kind) {
    case Legal::Kind::words:
        return listed(cell.legal.text);
    case Legal::Kind::keys:
        return withKeysOf(block, cell, [](const std::vector<std::string>& words) { return words; });
    case Legal::Kind::number:
    case Legal::Kind::text:
        break;
    }
    return {};
}

std::vector<int> legalNumbers(const ZelmCellInfo& cell)
{
    std::vector<int> numbers;
    if (cell.legal.kind == Legal::Kind::number) {
        for (const std::string& number : listed(cell.legal.text))
            numbers.push_back(static_cast<int>(zelm::legal::wholeNumber(number)));
    }
    return numbers;
}

std::string legalText(const ZelmCellInfo& cell)
{
    switch (cell.legal.kind) {
    case Legal::Kind::words:
        return orList(listed(cell.legal.text));
    case Legal::Kind::keys:
        return "a key of " + orList(listed(cell.legal.text));
    case Legal::Kind::text:
        return "any text";
    case Legal::Kind::number:
        break;
    }
    return domainText(cell);
}

std::string goesText(const ZelmCellInfo& cell)
{
    switch (cell.goes.kind) {
    case Destination::Kind::rail:
        return std::string(cell.goes.name) + (cell.goes.scaling.empty() ? "" : fmt::format(" x {}", cell.goes.scaling));
    case Destination::Kind::offchip:
        return "off chip";
    case Destination::Kind::shown:
        return "shown";
    case Destination::Kind::part:
        return fmt::format("in {}", cell.goes.name);
    case Destination::Kind::none:
        break;
    }
    return {};
}

std::optional<std::string> whyIllegal(const Block& block, const ZelmCellInfo& cell, const Value& value)
{
    if (const std::string* text = std::get_if<std::string>(&value)) {
        if (isLegalWord(block, cell, *text))
            return std::nullopt;
        const std::vector<std::string> words = legalWords(block, cell);
        return fmt::format("\"{}\" is no word of {}{}; legal: {}", *text, cell.name, suggestion(*text, words),
                           fmt::join(words, ", "));
    }
    const double number = numberOf(value);
    if (!cell.legal.rail.empty() && number == 0.0)
        return fmt::format("a rail at 0 V: leave {} out if the rail is unused", cell.name);
    const std::vector<int> numbers = legalNumbers(cell);
    const bool among = numbers.empty() || std::find(numbers.begin(), numbers.end(), number) != numbers.end();
    if (among && number >= cell.legal.lowest && number <= cell.legal.highest)
        return std::nullopt;
    return fmt::format("{} takes {}{}{}, not {}", cell.name, domainText(cell), cell.unit.empty() ? "" : " ", cell.unit,
                       valueText(value));
}

std::optional<std::string> whyUnlikely(const ZelmCellInfo& cell, const Value& value)
{
    const double number = numberOf(value);
    const double most = usualHighest(cell);
    if (!(number > most))
        return std::nullopt;
    const char* slip = cell.unit == "MHz"    ? "; it is in MHz: hertz?"
                       : cell.unit == "V"    ? "; it is in V: millivolts?"
                       : cell.unit == "C"    ? "; it is in degrees Celsius: kelvin?"
                       : cell.unit == "Gb/s" ? "; it is in Gb/s: megabits?"
                       : cell.unit == "Mb/s" ? "; it is in Mb/s: bits?"
                       : cell.unit == "MB/s" ? "; it is in MB/s: bytes?"
                       : most <= 2.0         ? "; percent?"
                                             : "";
    return fmt::format("{} is {}, usually at most {}{}", cell.name, valueText(value), numberText(most), slip);
}

std::optional<std::string> doubtOf(const Block& block, const ZelmCellInfo& cell, const Value& value)
{
    const auto* whole = std::get_if<int>(&value);
    const auto* real = std::get_if<float>(&value);
    const auto* text = std::get_if<std::string>(&value);
    if ((whole && (isUnset(*whole) || *whole == notANumberInt)) || (real && isUnset(*real)) || (text && isUnset(*text)))
        throw Error(fmt::format("{}: \"{}\" is how an unset cell reads; leave it out", cell.name, valueText(value)));
    const auto illegal = whyIllegal(block, cell, value);
    return illegal ? illegal : whyUnlikely(cell, value);
}

} // namespace zelm::host
