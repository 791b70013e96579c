// A data file: the library loads it and runs the block that it names, and the tool checks its rows. What is read as a
// plain file must be what libconfig reads.

#include "Fuzz.h"

#include "BlockHeaders.h"
#include "host/blocks/CheckRows.h"
#include "tests/support/TableFileCheck.h"

#include <libconfig.h++>

#include <stdexcept>
#include <vector>

using namespace zelm;

namespace {

// The library documents libconfig's exceptions for files that can't be read.
template <class Data>
bool isLoaded()
{
    try {
        return Data::getMutableGlobal().reset();
    } catch (const libconfig::ConfigException&) {
        return false;
    }
}

void runBlock(const host::Block& block)
{
    const auto instance = block.create();
    fuzz::orError([&] { instance->calculate(); });
    for (const ZelmCellInfo& cell : block.cells)
        fuzz::orError([&] { instance->pull(cell); });
    for (const ZelmTableInfo& table : block.tables)
        block.keys({std::string(table.group)}, true);
}

struct Target {
    std::string name;
    bool (*load)();
};

const std::vector<Target>& targets()
{
    static const std::vector<Target> all{
#define BLOCK(name, subsystem, title) {#name, isLoaded<ZelmOrvane##name##Data>},
#include "host/blocks/BlockList.def"
    };
    return all;
}

} // namespace

void zelm::fuzz::run(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::Scratch scratch;
    const std::string text = fuzz::textOf(bytes, size);
    for (const Target& target : targets()) {
        if (text.find("ZelmOrvane" + target.name + "Data") == std::string::npos)
            continue;
        const host::Block& block = host::block(target.name);
        const std::string path = scratch.write(block.dataFile(), text);
        setenv("QTA_DATADIR", scratch.path().c_str(), 1);
        if (const std::string difference = test::differenceFromLibconfig(path); !difference.empty())
            throw std::logic_error(difference);
        if (target.load())
            runBlock(block);
        fuzz::orError([&] { host::checkRows(block, host::DataLines(block.dataFile()), nullptr); });
        break;
    }
}
