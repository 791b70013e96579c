#include "host/base/Files.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"
#include "host/exchange/GroupTable.h"

#include <fmt/format.h>

namespace zelm::host {

Action declareImportTable(Options& options)
{
    const std::string& table = options.required("table", "The table: CSV, or a workbook (.xlsx)");
    const std::optional<std::string>& sheet = options.value("--sheet", "NAME", "The workbook's sheet; else its first");
    const std::optional<std::string>& output = options.text("-o,--output", "Write the design to this file");
    return [&](Run& run) {
        if (output)
            refuseOverwriting({*output}, {table});
        const TableDesign design = designOfTable(readTable(table, sheet.value_or("")));
        for (const std::string& warning : design.warnings)
            complain("warning: " + warning);
        if (output) {
            writeFile(*output, design.text);
            run.out += fmt::format("{} groups\n", design.groups);
        } else
            run.out += design.text;
        return kSuccess;
    };
}

} // namespace zelm::host
