#include "host/design/Include.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace zelm::host {

namespace {

constexpr std::size_t kMostIncludes = 100;
constexpr std::size_t kDeepestIncludes = 16;
constexpr const char* kIncludedFields[] = {"$schema", "name", "description", "include", "parameters", "groups"};

// What an expression can name: "mem/" stands before groups' names, "mem_" before parameters'.
std::string scopeOfPrefix(const std::string& prefix)
{
    std::string scope;
    for (const char c : prefix) {
        const bool inNames = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
        scope += inNames ? c : '_';
    }
    return scope;
}

std::string typeAndValue(const Json& value)
{
    return value.is_null() ? "null" : fmt::format("the {} {}", value.type_name(), quoted(value));
}

// One entry of an include list.
struct Entry {
    std::string file;
    std::string prefix;
};

// A file that is being read, and those that include it.
struct Level {
    std::filesystem::path directory;
    std::string identity;              ///< its path without links and detours
    std::vector<std::string> prefixes; ///< of its groups, the whole one first, then those of the files around it
};

// Puts what files include into one tree.
class Includer {
public:
    Includer(Json& root, JsonSource& source) : m_root(&root), m_source(&source) {}

    void run()
    {
        const std::filesystem::path file(m_source->file);
        m_levels.push_back({file.parent_path(), identityOf(file), {""}});
        if (const auto own = m_root->find("parameters"); own != m_root->end() && own->is_object()) {
            for (const auto& [name, value] : own->items())
                m_owners[name] = m_levels.back().identity;
        }
        const Json list = m_root->at("include"); // a copy: what is included moves the root's fields
        includeAll(list, *m_source);
        nameClocks();
        m_source->included = std::make_shared<const JsonSource::Inclusions>(std::move(m_inclusions));
    }

private:
    // A group whose clock may be one of its own file's or of one around it.
    struct Clocked {
        std::size_t index;
        std::vector<std::string> prefixes;
    };

    static std::string identityOf(const std::filesystem::path& path)
    {
        std::error_code failed;
        const std::filesystem::path canonical = std::filesystem::weakly_canonical(path, failed);
        return failed ? path.string() : canonical.string();
    }

    [[noreturn]] static void fail(const JsonSource& source, const std::string& path, const std::string& message)
    {
        throw Error(fmt::format("{}: {}", source.at(path), message));
    }

    static Entry entryOf(const Json& value, const JsonSource& source, const std::string& path)
    {
        if (value.is_string())
            return {value.get<std::string>(), ""};
        if (!value.is_object())
            fail(source, path,
                 fmt::format("expected a file's name or {{\"file\": ..., \"prefix\": ...}}, found {}",
                             typeAndValue(value)));
        Entry entry;
        for (const auto& [name, field] : value.items()) {
            if (name != "file" && name != "prefix")
                fail(source, fmt::format("{}.{}", path, name),
                     fmt::format("there is no field of this name here{}; known fields: file, prefix",
                                 suggestion(name, {"file", "prefix"})));
            constexpr std::size_t longest = 100;
            if (!field.is_string() || (name == "prefix" && field.get<std::string>().size() > longest))
                fail(source, fmt::format("{}.{}", path, name),
                     fmt::format("expected a text of at most {} characters, found {}", longest, typeAndValue(field)));
            (name == "file" ? entry.file : entry.prefix) = field.get<std::string>();
        }
        if (!value.contains("file"))
            fail(source, path, "an include needs its \"file\"");
        return entry;
    }

    void includeAll(const Json& list, const JsonSource& source)
    {
        if (!list.is_array())
            fail(source, "include", fmt::format("expected a list of files, found {}", typeAndValue(list)));
        for (std::size_t i = 0; i < list.size(); ++i) {
            const std::string path = fmt::format("include[{}]", i);
            include(entryOf(list[i], source, path), source, path);
        }
    }

    void include(const Entry& entry, const JsonSource& source, const std::string& path)
    {
        const std::filesystem::path file = m_levels.back().directory / entry.file;
        const std::string why = whyUnreadable(file.string());
        if (entry.file.empty() || !why.empty())
            fail(source, path,
                 entry.file.empty() ? "the name of the file is empty"
                                    : fmt::format("{} cannot be read: {}", file.string(), why));
        Level level{file.parent_path(), identityOf(file), {}};
        for (const Level& around : m_levels) {
            if (around.identity == level.identity)
                fail(source, path, fmt::format("{} includes itself: {}", entry.file, wayTo(level.identity)));
        }
        if (m_levels.size() > kDeepestIncludes)
            fail(source, path, fmt::format("files include each other more than {} deep", kDeepestIncludes));
        if (++m_files > kMostIncludes)
            fail(source, path, fmt::format("more than {} files are included", kMostIncludes));
        level.prefixes = m_levels.back().prefixes;
        level.prefixes.insert(level.prefixes.begin(), level.prefixes.front() + entry.prefix);
        m_levels.push_back(std::move(level));
        JsonSource own;
        const Json tree = readJson(file.string(), own);
        take(tree, own);
        m_levels.pop_back();
    }

    std::string wayTo(const std::string& identity) const
    {
        std::vector<std::string> names;
        for (const Level& level : m_levels)
            names.push_back(std::filesystem::path(level.identity).filename().string());
        names.push_back(std::filesystem::path(identity).filename().string());
        return fmt::format("{}", fmt::join(names, " -> "));
    }

    void take(const Json& tree, const JsonSource& source)
    {
        if (!tree.is_object())
            throw Error(fmt::format("{}: expected an object {{...}}, found {}", source.file, typeAndValue(tree)));
        for (const auto& [name, value] : tree.items()) {
            if (std::find(std::begin(kIncludedFields), std::end(kIncludedFields), name) == std::end(kIncludedFields))
                fail(source, name,
                     fmt::format("a file that is included has no field of this name{}; it gives: {}",
                                 suggestion(name, {std::begin(kIncludedFields), std::end(kIncludedFields)}),
                                 fmt::join(kIncludedFields, ", ")));
        }
        if (const auto parameters = tree.find("parameters"); parameters != tree.end())
            takeParameters(*parameters, source);
        if (const auto groups = tree.find("groups"); groups != tree.end())
            takeGroups(*groups, source);
        if (const auto list = tree.find("include"); list != tree.end())
            includeAll(*list, source);
    }

    std::vector<std::string> scopes() const
    {
        std::vector<std::string> scopes;
        for (const std::string& prefix : m_levels.back().prefixes)
            scopes.push_back(scopeOfPrefix(prefix));
        return scopes;
    }

    // A file around it may give another value to a parameter; two files beside each other may not.
    void takeParameters(const Json& parameters, const JsonSource& source)
    {
        if (!parameters.is_object())
            fail(source, "parameters", fmt::format("expected an object {{...}}, found {}", typeAndValue(parameters)));
        Json& all = (*m_root)["parameters"];
        if (!all.is_object() && !all.is_null())
            return; // reading the design says so
        for (const auto& [name, value] : parameters.items()) {
            const std::string full = scopes().front() + name;
            const std::string own = "parameters." + name;
            const auto [owner, isNew] = m_owners.try_emplace(full, m_levels.back().identity);
            if (isNew) {
                all[full] = value;
                m_inclusions["parameters." + full] = {source.file, source.lines, own, scopes()};
            } else if (all[full] != value && !isAround(owner->second)) {
                fail(source, own,
                     fmt::format("{} gives another value to this parameter; give it in the file that "
                                 "includes both, or a prefix to one",
                                 owner->second));
            }
        }
    }

    bool isAround(const std::string& identity) const
    {
        return std::any_of(m_levels.begin(), m_levels.end(),
                           [&](const Level& level) { return level.identity == identity; });
    }

    void takeGroups(const Json& groups, const JsonSource& source)
    {
        if (!groups.is_array())
            fail(source, "groups", fmt::format("expected a list [...], found {}", typeAndValue(groups)));
        Json& all = (*m_root)["groups"];
        if (!all.is_array() && !all.is_null())
            return;
        for (std::size_t i = 0; i < groups.size(); ++i) {
            m_inclusions[fmt::format("groups[{}]", all.size())] = {source.file, source.lines,
                                                                   fmt::format("groups[{}]", i), scopes()};
            Json group = groups[i];
            prefixName(group);
            m_clocked.push_back({all.size(), m_levels.back().prefixes});
            all.push_back(std::move(group));
        }
    }

    void prefixName(Json& group) const
    {
        const std::string& prefix = m_levels.back().prefixes.front();
        if (prefix.empty() || !group.is_object())
            return;
        const char* field = group.contains("name") ? "name" : "block";
        if (const auto name = group.find(field); name != group.end() && name->is_string())
            group["name"] = prefix + name->get<std::string>();
    }

    // A clock is looked for in the file of the group, then in those around it.
    void nameClocks()
    {
        std::set<std::string> names;
        for (const Json& group : m_root->value("groups", Json::array())) {
            if (group.is_object())
                names.insert(group.value("name", group.value("block", Json())).dump());
        }
        for (const Clocked& clocked : m_clocked) {
            Json& group = m_root->at("groups")[clocked.index];
            const auto clock = group.is_object() ? group.find("clock") : group.end();
            if (clock == group.end() || !clock->is_string())
                continue;
            for (const std::string& prefix : clocked.prefixes) {
                const Json name = prefix + clock->get<std::string>();
                if (names.contains(name.dump())) {
                    *clock = name;
                    break;
                }
            }
        }
    }

    Json* m_root;
    JsonSource* m_source;
    std::vector<Level> m_levels;
    std::size_t m_files = 0;
    std::map<std::string, std::string> m_owners; ///< the file that gives a parameter its value
    std::vector<Clocked> m_clocked;
    JsonSource::Inclusions m_inclusions;
};

Json withIncludes(Json root, JsonSource& source)
{
    if (root.is_object() && root.contains("include"))
        Includer(root, source).run();
    return root;
}

} // namespace

Json readDesignTree(const std::string& file, JsonSource& source)
{
    Json root = readJson(file, source);
    return withIncludes(std::move(root), source);
}

Json parseDesignTree(const std::string& text, JsonSource& source)
{
    Json root = parseJson(text, source);
    return withIncludes(std::move(root), source);
}

} // namespace zelm::host
