#include "host/estimate/EditedDesign.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/design/Place.h"
#include "host/design/Sections.h"

#include <optional>
#include <set>

namespace zelm::host {

// What has to be read again once a place changes.
struct ReadAgain {
    bool environment = false;
    std::optional<std::size_t> group; ///< by its index; neither: all
};

namespace {

// A group's inputs and count stand for themselves. Its name, block and clock are held against other groups'.
ReadAgain readAgain(Json& root, const std::string& path)
{
    ReadAgain again;
    if (root.contains("modes"))
        return again; // each has the whole design
    if (path.starts_with("environment."))
        again.environment = true;
    const std::size_t end = path.find(']');
    if (!path.starts_with("groups[") || end == std::string::npos)
        return again;
    const std::string rest = path.substr(end + 1);
    if (rest == ".count" || rest.starts_with(".inputs."))
        again.group = static_cast<std::size_t>(&placeAt(root, path.substr(0, end + 1)) - &root["groups"][0]);
    return again;
}

} // namespace

struct EditedDesign::Tree {
    Json root;
    JsonSource source;
    Reading reading;
    std::vector<Json*> places;
    std::vector<ReadAgain> again; // for each place
    bool environment = false;     // what has changed since the last estimate
    std::set<std::size_t> groups;
    bool all = true;
    std::optional<RunningDesign> running;
    Gaps gaps;
};

EditedDesign::EditedDesign(const Json& root, const JsonSource& source, const std::vector<std::string>& places,
                           Gaps gaps)
    : m_tree(new Tree{root, source, startReading(root, source), {}, {}, false, {}, true, {}, gaps})
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
    Json& here = *m_tree->places.at(place);
    if (here == value && here.type() == value.type())
        return;
    here = value;
    const ReadAgain& again = m_tree->again[place];
    if (again.environment)
        m_tree->environment = true;
    else if (again.group)
        m_tree->groups.insert(*again.group);
    else
        m_tree->all = true;
}

void EditedDesign::read()
{
    Tree& tree = *m_tree;
    if (tree.all) {
        Design design = readDesign(tree.root, tree.source);
        tree.reading = startReading(tree.root, tree.source);
        if (tree.running)
            tree.running->change(std::move(design));
        else
            tree.running.emplace(std::move(design), Curves::none, tree.gaps);
    } else {
        if (tree.environment)
            tree.running->change(
                readEnvironment(tree.root["environment"], tree.running->design().stages, tree.reading));
        for (const std::size_t index : tree.groups)
            tree.running->change(index, readGroup(tree.root["groups"][index], index, tree.reading));
    }
    tree.all = tree.environment = false;
    tree.groups.clear();
}

const Estimate& EditedDesign::estimate()
{
    read();
    return m_tree->running->estimate();
}

} // namespace zelm::host
