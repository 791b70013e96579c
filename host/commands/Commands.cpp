#include "host/commands/Command.h"

namespace zelm::host {

namespace {

constexpr Command kCommands[] = {
    {"estimate", "Estimate a design", "zelm estimate design.json --check --html report.html", declareEstimate},
    {"sweep", "Estimate a design over ranges of its values",
     "zelm sweep design.json --vary environment.ambientTemperature=0:80:10 --csv", declareSweep},
    {"explain", "Tell how a quantity of a design comes about, down to what was typed or characterised",
     "zelm explain design.json total@MAX --depth 2", declareExplain},
    {"diff", "Tell what differs between two designs, and what each difference does to the power",
     "zelm diff old.json new.json --fail-above 2%", declareDiff},
    {"solve", "Find the value of an input at which a quantity crosses a limit",
     "zelm solve design.json --vary environment.thetaJA=0.2:3 --until 'junction@MAX <= 95 C'", declareSolve},
    {"fit", "Estimate a design on every part of the catalogue", "zelm fit design.json --temperature i", declareFit},
    {"sample", "Estimate a design whose values are distributions: bands, and what makes them",
     "zelm sample design.json --points 4096 --html bands.html", declareSample},
    {"sensitivity", "Move every input a little, and sort them by what that does",
     "zelm sensitivity design.json --of junction@MAX --html tornado.html", declareSensitivity},
    {"live", "Write a page that estimates what is typed in it, with nothing in it yet", "zelm live -o live.html",
     declareLive},
    {"new", "Write a commented design to begin with", "zelm new --template vision -o design.json", declareNew},
    {"import", "Take over what other tools wrote", "zelm import netlist synth.json -o design.json", nullptr,
     importCommands},
    {"export", "Hand designs over to other tools", "zelm export groups design.json -o groups.csv", nullptr,
     exportCommands},
    {"propagate", "Set toggle rates of an imported design from those of its netlist's inputs",
     "zelm propagate synth.json --design design.json --input reset=0,0 -o active.json", declarePropagate},
    {"format", "Write a design in the one form that all can have", "zelm format design.json --in-place", declareFormat},
    {"blocks", "List the resource kinds", "zelm blocks --json", declareBlocks},
    {"cells", "List the cells of a block", "zelm cells Bram --inputs", declareCells},
    {"calc", "Calculate one block and print all its cells", "zelm calc Bram NUM_BRAMS=64 PORT_A_CLOCK=250",
     declareCalc},
    {"parts", "List devices, packages, grades and resources", "zelm parts", declareParts},
    {"standards", "List I/O standards by kind of bank", "zelm standards --json", declareStandards},
    {"schema", "Print the JSON Schema of design files, or of the output", "zelm schema > design.schema.json",
     declareSchema},
    {"check-data", "Tell whether a data directory is whole", "zelm check-data my/data", declareCheckData},
    {"docs", "Write the reference of all cells as Markdown", "zelm docs docs/cells", declareDocs},
};

} // namespace

std::span<const Command> allCommands()
{
    return kCommands;
}

} // namespace zelm::host
