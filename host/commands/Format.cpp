#include "host/design/Format.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Terminal.h"
#include "host/commands/Command.h"

#include <fmt/format.h>

namespace zelm::host {

Action declareFormat(Options& options)
{
    const std::string& design = options.required("design", "The design file (JSON)");
    const std::optional<std::string>& output = options.text("-o,--output", "Write it to this file");
    const bool& check = options.flag("--check", "Write nothing; end with exit code 1 if the file isn't in this form");
    const bool& inPlace = options.flag("--in-place", "Write it to the design file");
    options.exclude("--check", "--in-place");
    options.exclude("--check", "--output");
    options.exclude("--in-place", "--output");
    return [&](Run& run) {
        if (inPlace && design == kStandardInput)
            throw Error("standard input has no place; --in-place needs a file");
        if (output)
            refuseOverwriting({*output}, {design});
        const std::string text = readFile(design);
        const std::string formatted = formattedDesign(text, design == kStandardInput ? "standard input" : design);
        if (check) {
            if (text != formatted)
                complain(fmt::format("{} isn't in the form that zelm format gives it", design));
            return text == formatted ? kSuccess : kBudgetBroken;
        }
        if (output)
            writeFile(*output, formatted);
        else if (!inPlace)
            run.out += formatted;
        else if (text != formatted)
            writeFile(design, formatted);
        return kSuccess;
    };
}

} // namespace zelm::host
