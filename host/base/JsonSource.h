#pragma once

#include "host/base/JsonFwd.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

namespace zelm::host {

/// A JSON file's name and the line on which each of its fields begins, by path: "groups[2].inputs.CLOCK_FREQ".
struct JsonSource {
    /// Lines by the hash of the path: of those fields only that begin on another line than what encloses them, so that
    /// there are no more of them than lines, and none holds its path.
    using Lines = std::unordered_map<std::uint64_t, std::size_t>;

    /// A field that stands in another file, which was included.
    struct Included {
        std::string file;
        std::shared_ptr<const Lines> lines;
        std::string path;                ///< there
        std::vector<std::string> scopes; ///< what its names begin with here, then those of the files around it
    };
    using Inclusions = std::unordered_map<std::string, Included>; ///< by the path here

    std::string file;
    std::shared_ptr<const Lines> lines; ///< shared: each point of a sweep has its copy of the source
    std::shared_ptr<const Inclusions> included{};

    /// "design.json:12: groups[2].inputs.CLOCK_FREQ"; the line of what encloses a field that isn't there.
    std::string at(const std::string& path) const;
    /// The file of a field, and the line on which it begins, or what encloses it; 0 if no line is known.
    std::pair<std::string, std::size_t> lineOf(const std::string& path) const;
    /// What the names begin with that may be meant where a field stands, the nearest first; none for the file itself.
    std::vector<std::string> scopesOf(const std::string& path) const;
    /// The files that were included, each once.
    std::vector<std::string> includedFiles() const;

private:
    const Included* inclusionOf(std::string_view path, std::string_view& enclosing) const;
};

/// Parses text, in which comments may stand (// and /* */), and fills source.lines. Bad syntax, fields that stand
/// twice, and more depth or values than a design can need are an Error with file and line.
Json parseJson(const std::string& text, JsonSource& source);
/// The same for a file, or "-" for standard input, whose name source takes.
Json readJson(const std::string& file, JsonSource& source);

} // namespace zelm::host
