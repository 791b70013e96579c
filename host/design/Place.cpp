#include "host/design/Place.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

namespace zelm::host {

namespace {

// Null if it has none.
const std::string* nameOf(const Json& element)
{
    if (!element.is_object())
        return nullptr;
    auto name = element.find("name");
    if (name == element.end())
        name = element.find("block");
    return name == element.end() ? nullptr : name->get_ptr<const std::string*>();
}

// The element of a list by its index or its name.
template <class AnyJson>
AnyJson& elementAt(AnyJson& list, const std::string& wanted, const std::string& path)
{
    if (!list.is_array())
        throw Error(fmt::format("\"{}\" isn't a list", path));
    AnyJson* found = nullptr;
    for (std::size_t i = 0; i < list.size(); ++i) {
        const std::string* name = nameOf(list[i]);
        if ((name && *name == wanted) || std::to_string(i) == wanted)
            found = &list[i];
    }
    if (found)
        return *found;
    std::vector<std::string> names;
    for (const Json& element : list) {
        const std::string* name = nameOf(element);
        names.push_back(name ? *name : "");
    }
    throw Error(fmt::format("\"{}\" has no element {}{}", path, wanted, suggestion(wanted, names)));
}

// A part of a path.
struct Step {
    std::string name; ///< of a field, or the element's name or index
    std::string list; ///< the path of the list that the element is in
    bool isElement = false;
};

std::vector<Step> stepsOf(const std::string& path)
{
    constexpr auto deepest = 64; // as in files
    if (std::count(path.begin(), path.end(), '.') >= deepest)
        throw Error(fmt::format("the path is more than {} fields deep", deepest));
    std::vector<Step> steps;
    std::size_t next = 0;
    while (next < path.size()) {
        const std::size_t end = std::min(path.find_first_of(".[", next), path.size());
        if (std::string field = path.substr(next, end - next); !field.empty())
            steps.push_back({std::move(field), "", false});
        next = end;
        if (next < path.size() && path[next] == '[') {
            const std::size_t close = path.find(']', next);
            if (close == std::string::npos)
                throw Error("a ']' is missing");
            steps.push_back({path.substr(next + 1, close - next - 1), path.substr(0, next), true});
            next = close + 1;
        }
        if (next < path.size() && path[next] == '.')
            ++next;
    }
    return steps;
}

} // namespace

const Json* findPlace(const Json& root, const std::string& path)
{
    static const Json nothing;
    const Json* here = &root;
    for (const Step& step : stepsOf(path)) {
        if (step.isElement) {
            here = &elementAt(*here, step.name, step.list);
            continue;
        }
        if (!here->is_object() && !here->is_null())
            throw Error(fmt::format("\"{}\" isn't a field of an object", step.name));
        const auto field = here->find(step.name);
        here = field == here->end() ? &nothing : &*field;
    }
    return here == &nothing ? nullptr : here;
}

Json& placeAt(Json& root, const std::string& path)
{
    findPlace(root, path); // whose Error leaves all as it was
    Json* here = &root;
    for (const Step& step : stepsOf(path))
        here = step.isElement ? &elementAt(*here, step.name, step.list) : &(*here)[step.name];
    return *here;
}

} // namespace zelm::host
