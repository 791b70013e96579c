#pragma once

#include "host/base/Json.h"
#include "host/base/JsonSource.h"

#include <map>
#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

/// A place in the file by its path: groups[2].inputs.CLOCK_FREQ.
class Place {
public:
    Place(const JsonSource& source, std::string path) : m_source(&source), m_path(std::move(path)) {}

    Place field(const std::string& name) const;
    Place element(std::size_t index) const;
    std::string say(const std::string& message) const;
    [[noreturn]] void fail(const std::string& message) const;
    const std::string& path() const
    {
        return m_path;
    }

private:
    const JsonSource* m_source;
    std::string m_path;
};

/// An object whose fields are taken one by one, so that those left over are known to be mistakes.
class Fields {
public:
    Fields(const Json& object, Place place);
    static std::string describe(const Json& value);
    const Json* take(const std::string& name);
    Place place(const std::string& name) const;
    std::string text(const std::string& name, const std::string& otherwise = "");

    /// Names and words go into every table and message: a limit keeps those readable.
    static std::string text(const Json& value, const Place& where);
    std::optional<double> number(const std::string& name, double least, double most, const char* unit);
    static double number(const Json& value, const Place& where, double least, double most, const char* unit);
    std::map<std::string, double> numbers(const std::string& name, double least, double most, const char* unit);

    /// To be called once everything known has been taken.
    void refuseOthers() const;

private:
    const Json* m_object;
    Place m_place;
    std::vector<std::string> m_known;
};

} // namespace zelm::host
