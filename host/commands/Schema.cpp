#include "host/design/Schema.h"

#include "host/base/Json.h"
#include "host/commands/Command.h"

namespace zelm::host {

Action declareSchema(Options&)
{
    return [](Run& run) {
        run.out += jsonText(designSchema());
        return kSuccess;
    };
}

} // namespace zelm::host
