#include "host/estimate/Subtotals.h"

#include <algorithm>
#include <set>
#include <string_view>
#include <unordered_map>

namespace zelm::host {

namespace {

// Adds up by name, in the order of first mention.
class Sums {
public:
    Subtotal& operator[](const std::string& name)
    {
        const auto [place, isNew] = m_places.try_emplace(name, m_all.size());
        if (isNew) {
            m_all.emplace_back();
            m_all.back().name = name;
        }
        return m_all[place->second];
    }
    std::vector<Subtotal>& all()
    {
        return m_all;
    }

private:
    std::vector<Subtotal> m_all;
    std::unordered_map<std::string, std::size_t> m_places;
};

void add(Subtotal& sum, const GroupResult& group)
{
    ++sum.groups;
    sum.watts += group.watts;
    sum.offchipWatts += group.offchipWatts;
}

// "a/b/c" counts in "a", "a/b" and "a/b/c".
void addBelow(Sums& sums, const GroupResult& group)
{
    std::size_t depth = 0;
    for (std::size_t end = 0; end != std::string::npos; ++depth) {
        end = group.in.find('/', end == 0 ? 0 : end + 1);
        Subtotal& sum = sums[group.in.substr(0, end)];
        sum.depth = depth;
        add(sum, group);
    }
}

void addRails(Sums& sums, const GroupResult& group)
{
    std::set<std::string_view> loaded;
    for (const Contribution& part : group.contributions) {
        Subtotal& sum = sums[std::string(part.rail)];
        sum.groups += loaded.insert(part.rail).second ? 1U : 0U;
        sum.watts += part.watts;
        sum.amperes += part.amperes;
    }
}

// By what holds them; what nothing holds, by no name.
using Parts = std::unordered_map<std::string, std::vector<const Subtotal*>>;

void putInOrder(const Parts& parts, const std::string& holder, std::vector<Subtotal>& ordered)
{
    const auto found = parts.find(holder);
    if (found == parts.end())
        return;
    for (const Subtotal* sum : found->second) {
        ordered.push_back(*sum);
        if (!sum->name.empty())
            putInOrder(parts, sum->name, ordered);
    }
}

} // namespace

std::vector<Subtotal> subtotals(const Estimate& estimate, By by)
{
    Sums sums;
    for (const GroupResult& group : estimate.groups) {
        switch (by) {
        case By::in:
            addBelow(sums, group);
            break;
        case By::block:
            add(sums[std::string(group.block->name)], group);
            break;
        case By::rail:
            addRails(sums, group);
            break;
        case By::clock:
            add(sums[group.clock], group);
            break;
        }
    }
    if (by != By::in)
        return sums.all();
    std::vector<Subtotal> ordered;
    Parts parts;
    for (const Subtotal& sum : sums.all())
        parts[sum.depth == 0 ? "" : sum.name.substr(0, sum.name.rfind('/'))].push_back(&sum);
    putInOrder(parts, "", ordered);
    return ordered;
}

} // namespace zelm::host
