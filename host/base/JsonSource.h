#pragma once

#include "host/base/JsonFwd.h"

#include <cstddef>
#include <map>
#include <string>

namespace zelm::host {

/// A JSON file's name and the line on which each of its fields begins, by path: "groups[2].inputs.CLOCK_FREQ".
struct JsonSource {
    std::string file;
    std::map<std::string, std::size_t> lines;

    /// "design.json:12: groups[2].inputs.CLOCK_FREQ"; the line of what encloses a field that isn't there.
    std::string at(const std::string& path) const;
};

/// Parses text and fills source.lines. Bad syntax and fields that stand twice are an Error with file and line.
Json parseJson(const std::string& text, JsonSource& source);
/// The same for a file, whose name source takes.
Json readJson(const std::string& file, JsonSource& source);

} // namespace zelm::host
