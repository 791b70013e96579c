#include "host/base/Terminal.h"
#include "host/commands/Tool.h"

#include <fmt/format.h>

#include <cstdio>
#include <exception>

namespace {

using namespace zelm::host;

constexpr Command kCommands[] = {
    {"estimate", "Estimate a design", declareEstimate},
    {"sweep", "Estimate a design over ranges of its values", declareSweep},
    {"blocks", "List the resource kinds", declareBlocks},
    {"cells", "List the cells of a block", declareCells},
    {"calc", "Calculate one block and print all its cells", declareCalc},
    {"parts", "List devices, packages, grades and resources", declareParts},
    {"standards", "List I/O standards by kind of bank", declareStandards},
    {"schema", "Print the JSON Schema of design files", declareSchema},
    {"check-data", "Tell whether a data directory is whole", declareCheckData},
    {"docs", "Write the reference of all cells as Markdown", declareDocs},
};

} // namespace

int main(int argc, char** argv)
{
    try {
        return runTool(argc, argv, kCommands);
    } catch (const std::exception& error) {
        fmt::print(stderr, "{} {}\n", Paint(takesColour(stderr)).bad("zelm:"), error.what());
        return kUserError;
    }
}
