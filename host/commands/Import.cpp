#include "host/commands/Command.h"

namespace zelm::host {

namespace {

constexpr Command kImports[] = {
    {"activity", "Set a design's activity from a simulation (VCD or SAIF)",
     "zelm import activity run.vcd --design design.json --scope top.dut -o active.json", declareImportActivity},
    {"netlist", "Make a design of a synthesised netlist",
     "zelm import netlist synth.json --clock clk=200MHz -o design.json", declareImportNetlist},
    {"table", "Make a design of a table of groups (CSV or .xlsx)", "zelm import table groups.csv -o design.json",
     declareImportTable},
};

} // namespace

std::span<const Command> importCommands()
{
    return kImports;
}

} // namespace zelm::host
