#include "host/estimate/EditedDesign.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/design/Place.h"
#include "host/design/Sections.h"

#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

namespace zelm::host {

// What has to be read again once a place changes.
struct ReadAgain {
    bool environment = false;
    std::optional<std::size_t> group; ///< by its index; neither: all
};

namespace {

// A place in a group: the group's index, and the rest of the path.
struct PlaceInGroup {
    std::size_t group = 0;
    std::string rest;
};

std::optional<PlaceInGroup> placeInGroup(Json& root, const std::string& path)
{
    const std::size_t end = path.find(']');
    if (!path.starts_with("groups[") || end == std::string::npos)
        return std::nullopt;
    const Json* group = &placeAt(root, path.substr(0, end + 1));
    return PlaceInGroup{static_cast<std::size_t>(group - &root["groups"][0]), path.substr(end + 1)};
}

// A group's inputs and count stand for themselves. Its name, block and clock are held against other groups'.
ReadAgain readAgain(Json& root, const std::string& path)
{
    ReadAgain again;
    if (path.starts_with("environment."))
        again.environment = true;
    const auto place = placeInGroup(root, path);
    if (place && (place->rest == ".count" || place->rest.starts_with(".inputs.")))
        again.group = place->group;
    return again;
}

} // namespace

// A mode's settings, as they bear on what is read again.
class ModeSettings {
public:
    // Of a design that has been read, so that they are what they should be.
    ModeSettings(Json& root, const Json& mode, const JsonSource& source)
    {
        const auto set = mode.find("set");
        if (set == mode.end())
            return;
        Json changed;
        if (const auto parameters = root.find("parameters"); parameters != root.end())
            changed["parameters"] = *parameters;
        for (const auto& [path, value] : set->items()) {
            if (const auto place = placeInGroup(root, path)) {
                m_ofGroups[place->group].emplace_back(place->rest, value);
            } else if (path.starts_with("parameters.")) {
                placeAt(changed, path) = value;
                m_setsParameters = true;
            }
        }
        if (m_setsParameters)
            m_reading = startReading(changed, source);
    }

    Environment environment(const Json& value, const Environment& base, const std::vector<ThermalStage>& stages) const
    {
        return m_setsParameters ? readEnvironment(value, stages, m_reading) : base;
    }

    Group group(const Json& value, std::size_t index, const Group& base, Reading& reading)
    {
        const auto settings = m_ofGroups.find(index);
        if (settings == m_ofGroups.end() && !m_setsParameters)
            return base;
        Json changed = value;
        if (settings != m_ofGroups.end()) {
            for (const auto& [path, setting] : settings->second)
                placeAt(changed, path) = setting;
        }
        return readGroup(changed, index, m_setsParameters ? m_reading : reading);
    }

private:
    std::map<std::size_t, std::vector<std::pair<std::string, Json>>> m_ofGroups; // by the path in the group
    bool m_setsParameters = false;
    Reading m_reading; // if so
};

struct EditedDesign::Tree {
    Json root;
    JsonSource source;
    Gaps gaps;
    Scope scope;
    Reading reading{};
    std::vector<Json*> places{};
    std::vector<ReadAgain> again{}; // for each place
    std::vector<ModeSettings> modes{};
    bool environment = false; // what has changed since the last estimate
    std::set<std::size_t> groups{};
    bool all = true;
    std::optional<RunningDesign> running{};
    const DataFactors* factors = nullptr;

    void change(Json& place, const ReadAgain& readAgain, const Json& value);
    void readAll();
    void readChanges();
};

void EditedDesign::Tree::change(Json& place, const ReadAgain& readAgain, const Json& value)
{
    if (place == value && place.type() == value.type())
        return;
    place = value;
    if (readAgain.environment)
        environment = true;
    else if (readAgain.group)
        groups.insert(*readAgain.group);
    else
        all = true;
}

void EditedDesign::Tree::readAll()
{
    all = true; // until this ends well
    Design design = readDesign(root, source);
    reading = startReading(root, source);
    modes.clear();
    if (const auto list = root.find("modes"); list != root.end()) {
        for (const Json& mode : *list)
            modes.emplace_back(root, mode, source);
    }
    if (running)
        running->change(std::move(design));
    else
        running.emplace(std::move(design), Curves::none, gaps, scope);
    running->scaleBy(factors);
    all = false;
}

void EditedDesign::Tree::readChanges()
{
    const std::vector<ThermalStage>& stages = running->design().stages;
    if (environment) {
        const Json& value = root["environment"];
        const Environment base = readEnvironment(value, stages, reading);
        for (std::size_t i = 0; i < modes.size(); ++i)
            running->changeMode(i, modes[i].environment(value, base, stages));
        running->change(base);
    }
    for (const std::size_t index : groups) {
        const Json& value = root["groups"][index];
        Group base = readGroup(value, index, reading);
        for (std::size_t i = 0; i < modes.size(); ++i)
            running->changeMode(i, index, modes[i].group(value, index, base, reading));
        running->change(index, std::move(base));
    }
}

EditedDesign::EditedDesign(const Json& root, const JsonSource& source, const std::vector<std::string>& places,
                           Gaps gaps, Scope scope)
    : m_tree(new Tree{root, source, gaps, scope})
{
    for (const std::string& place : places)
        placeAt(m_tree->root, place); // what isn't there yet may move what is
    for (const std::string& place : places) {
        m_tree->places.push_back(&placeAt(m_tree->root, place));
        m_tree->again.push_back(readAgain(m_tree->root, place));
    }
}

EditedDesign::~EditedDesign() = default;
EditedDesign::EditedDesign(EditedDesign&&) noexcept = default;

void EditedDesign::set(std::size_t place, const Json& value)
{
    m_tree->change(*m_tree->places.at(place), m_tree->again[place], value);
}

void EditedDesign::set(const std::string& path, const Json& value)
{
    Json& here = placeAt(m_tree->root, path);
    m_tree->change(here, readAgain(m_tree->root, path), value);
}

const Json& EditedDesign::root() const
{
    return m_tree->root;
}

void EditedDesign::scaleBy(const DataFactors* factors)
{
    m_tree->factors = factors;
    if (m_tree->running)
        m_tree->running->scaleBy(factors);
}

const Estimate& EditedDesign::estimate()
{
    Tree& tree = *m_tree;
    if (!tree.all) {
        try {
            tree.readChanges();
        } catch (const Error&) {
            tree.all = true; // which tells what is wrong with the whole
        }
    }
    if (tree.all)
        tree.readAll();
    tree.environment = false;
    tree.groups.clear();
    return tree.running->estimate();
}

} // namespace zelm::host
