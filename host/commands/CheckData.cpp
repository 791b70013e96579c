#include "host/blocks/CheckData.h"

#include "host/commands/Command.h"

namespace zelm::host {

Action declareCheckData(Options& options)
{
    options.dataDirectory("directory", "The data directory; else the one in use");
    return [](Run& run) {
        const DataCheck check = checkData(run.barAfter);
        run.out += check.text;
        return check.whole ? kSuccess : kUserError;
    };
}

} // namespace zelm::host
