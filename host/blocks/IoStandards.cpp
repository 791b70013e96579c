#include "host/blocks/IoStandards.h"

#include "host/blocks/Block.h"

#include "framework/ZelmUnset.h"
#include "io/ZelmOrvaneNaltData.h"
#include "io/ZelmOrvaneSelvData.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace zelm::host {

namespace {

template <class Data>
void list(std::vector<IoStandard>& standards, const std::string& bank)
{
    const Data& data = Data::getGlobal();
    const auto add = [&](const char* direction, const char* table, auto volts) {
        std::vector<std::string> names = data.getCfgKeys({table}, false);
        std::sort(names.begin(), names.end());
        for (const std::string& name : names)
            standards.push_back({bank, direction, name, volts(name)});
    };
    // A standard's own voltage stands in its row, or else in the list for hosts.
    const auto listed = [&](const char* direction, const std::string& name) {
        const std::string volts = data.getIoList(direction, name);
        return isUnset(volts) ? unsetFloat : ZelmHelperUtils::s2f(volts);
    };
    add("input", "IBUF", [&](const std::string& name) {
        return ZelmHelperUtils::IFERROR(data.findIbuf(name, "VCCO"), listed("INPUT", name));
    });
    add("output", "OBUF", [&](const std::string& name) {
        return ZelmHelperUtils::IFERROR(data.findObuf(name, "VCCO"), listed("OUTPUT", name));
    });
}

constexpr std::array<std::string_view, 3> kPairPrefixes{"DIFF_", "LVDS", "MIPI_"};
constexpr std::array<std::string_view, 3> kPairs{"LVPECL", "SUB_LVDS", "SLVS_400_25"};

} // namespace

bool isPair(const std::string& standard)
{
    return std::any_of(kPairPrefixes.begin(), kPairPrefixes.end(),
                       [&](std::string_view prefix) { return standard.starts_with(prefix); }) ||
           std::find(kPairs.begin(), kPairs.end(), standard) != kPairs.end();
}

const std::vector<IoStandard>& ioStandards()
{
    static const std::vector<IoStandard> all = [] {
        std::vector<IoStandard> standards;
        block("Selv").load();
        block("Nalt").load();
        list<ZelmOrvaneSelvData>(standards, "Selv");
        list<ZelmOrvaneNaltData>(standards, "Nalt");
        return standards;
    }();
    return all;
}

} // namespace zelm::host
