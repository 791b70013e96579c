// A file of another tool, which tells by itself what it is: a table of groups, as text or as a workbook, or a dump of
// simulated activity.

#include "Fuzz.h"

#include "host/exchange/Dump.h"
#include "host/exchange/Table.h"

using namespace zelm;

void zelm::fuzz::run(const std::uint8_t* bytes, std::size_t size)
{
    static const fuzz::Scratch scratch;
    const std::string file = scratch.write("input", fuzz::textOf(bytes, size));
    fuzz::orError([&] { host::readTable(file, ""); });
    fuzz::orError([&] {
        const auto dump = host::openDump(file);
        host::ScopeTree tree = dump->scopes();
        dump->count(tree, {}, [](const host::DumpVariable&) { return true; });
    });
}
