#pragma once

#include "host/base/JsonFwd.h"
#include "host/base/JsonSource.h"
#include "host/design/Distribution.h"
#include "host/design/Parameters.h"

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

/// What the sections of a design are read against, and what reading them warns of.
struct Reading {
    JsonSource source;
    Parameters parameters;
    std::vector<std::string> warnings{};         ///< values that are legal but most likely a slip
    std::vector<Uncertain>* uncertain = nullptr; ///< where to note those that are distributions, if they are asked for
};

/// A place in the file by its path: groups[2].inputs.CLOCK_FREQ.
class Place {
public:
    Place(const Reading& reading, std::string path) : m_reading(&reading), m_path(std::move(path)) {}

    Place field(const std::string& name) const;
    Place element(std::size_t index) const;
    std::string say(const std::string& message) const;
    [[noreturn]] void fail(const std::string& message) const;
    /// The place of a field of a distribution that is wrong.
    [[noreturn]] void fail(const BadDistribution& error) const;
    /// That the value here is a distribution.
    void note(const Distribution& distribution) const;
    const std::string& path() const
    {
        return m_path;
    }
    const Reading& reading() const
    {
        return *m_reading;
    }

private:
    const Reading* m_reading;
    std::string m_path;
};

/// What a number may be. Beyond lies a mistake in the unit or the decimal point.
struct Range {
    double least = 0.0;
    double most = 0.0;
    std::string_view unit;    ///< what a plain number counts in; "" for plain numbers
    std::string_view words{}; ///< the unit in messages, if that isn't its symbol
};

/// An object whose fields are taken one by one, so that those left over are known to be mistakes.
class Fields {
public:
    Fields(const Json& object, Place place);

    /// Null if it isn't there.
    const Json* take(const std::string& name);
    Place place(const std::string& name) const;
    std::string text(const std::string& name, const std::string& otherwise = "");
    /// A text for which a parameter's word may stand.
    std::string word(const std::string& name);
    std::optional<double> number(const std::string& name, const Range& range);
    std::optional<double> whole(const std::string& name, const Range& range);
    /// An object of numbers by names that are the design's.
    std::map<std::string, double> numbers(const std::string& name, const Range& range);
    /// To be called once everything known has been taken.
    void refuseOthers() const;

    static std::string describe(const Json& value);
    static std::string text(const Json& value, const Place& where);
    static std::string word(const Json& value, const Place& where);
    /// A number, a text with a unit ("322 MHz"), or an expression ("= fclk / 2"), counted in the range's unit.
    static double number(const Json& value, const Place& where, const Range& range);
    static std::map<std::string, double> numbers(const Json& object, const Place& where, const Range& range);
    static double whole(const Json& value, const Place& where, const Range& range);
    /// What may stand for any of these; a number stays in the range.
    static Distribution distribution(const Json& value, const Place& where, const Range& range, bool isWhole);
    static Distribution words(const Json& value, const Place& where);

private:
    const Json* m_object;
    Place m_place;
    std::vector<std::string> m_known;
};

} // namespace zelm::host
