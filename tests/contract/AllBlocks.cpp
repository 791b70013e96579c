#include "contract/AllBlocks.h"

#define BLOCK(folder, block, ...) class ZelmOrvane##block##Model;
#include "contract/Blocks.def"

const std::vector<zelm::test::BlockRow>& zelm::test::allBlocks()
{
    static const std::vector<BlockRow> rows{
#define BLOCK(folder, name, ...) {#name, zelm::test::block<ZelmOrvane##name##Model>(), {__VA_ARGS__}},
#include "contract/Blocks.def"
    };
    return rows;
}
