#include "host/commands/Command.h"

namespace zelm::host {

namespace {

constexpr Command kImports[] = {
    {"netlist", "Make a design of a synthesised netlist",
     "zelm import netlist synth.json --clock clk=200MHz -o design.json", declareImportNetlist},
};

} // namespace

std::span<const Command> importCommands()
{
    return kImports;
}

} // namespace zelm::host
