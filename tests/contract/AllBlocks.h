#pragma once

#include "contract/Block.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>
#include <ostream>
#include <string>
#include <vector>

namespace zelm::test {

/// A row of Blocks.def.
struct BlockRow {
    std::string name;
    const Block& block;
    std::array<std::size_t, 9> counts; ///< of inputs, outputs and intermediates, each as ints, floats and strings

    friend void PrintTo(const BlockRow& row, std::ostream* out)
    {
        *out << row.name;
    }
};

const std::vector<BlockRow>& allBlocks();

/// A test of every block: TEST_P over a class derived from it.
class EachBlock : public testing::TestWithParam<BlockRow> {
protected:
    const Block& block = GetParam().block;
};

inline std::string nameOfBlock(const testing::TestParamInfo<BlockRow>& info)
{
    return info.param.name;
}

} // namespace zelm::test
