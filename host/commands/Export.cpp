#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Text.h"
#include "host/commands/Command.h"
#include "host/exchange/GroupTable.h"

#include <fmt/format.h>

namespace zelm::host {

namespace {

Action declareExportGroups(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::optional<std::string>& output =
        options.text("-o,--output", "Write them to this file: a workbook if its name ends with .xlsx, else CSV");
    return [&](Run& run) {
        const Design read = readDesign(design);
        if (!output) {
            run.out += groupsAsCsv(read);
            return kSuccess;
        }
        std::vector<std::string> inputs = read.source.includedFiles();
        inputs.push_back(design);
        refuseOverwriting({*output}, inputs);
        const std::string name = lower(*output);
        writeFile(*output, name.ends_with(".xlsx") ? groupsAsXlsx(read) : groupsAsCsv(read));
        return kSuccess;
    };
}

constexpr Command kExports[] = {
    {"groups", "Print a design's groups as a table, for spreadsheets and zelm import table",
     "zelm export groups examples/vision.json -o groups.xlsx", declareExportGroups},
};

} // namespace

std::span<const Command> exportCommands()
{
    return kExports;
}

} // namespace zelm::host
