// Every block against cases computed by an independent implementation, to the last bit of each cell.
#include "contract/Vectors.h"
#include "contract/AllBlocks.h"

#include "support/Bits.h"
#include "support/DataDirectory.h"

namespace zelm::test::vectorsTest {

class Vectors : public EachBlock {
protected:
    void set(ZelmParams& params, const std::string& name, const CellValue& value) const
    {
        if (const int* whole = std::get_if<int>(&value))
            block.intCell(params, name) = *whole;
        else if (const float* real = std::get_if<float>(&value))
            block.floatCell(params, name) = *real;
        else
            block.stringCell(params, name) = std::get<std::string>(value);
    }

    void compare(ZelmParams& params, const std::string& name, const CellValue& expected, const std::string& where) const
    {
        if (const int* whole = std::get_if<int>(&expected))
            EXPECT_EQ(block.intCell(params, name), *whole) << name << " of " << where;
        else if (const float* real = std::get_if<float>(&expected))
            EXPECT_THAT(block.floatCell(params, name), IsBits(*real)) << name << " of " << where;
        else
            EXPECT_EQ(block.stringCell(params, name), std::get<std::string>(expected)) << name << " of " << where;
    }

    void run(const VectorCase& one) const
    {
        const std::unique_ptr<ZelmParams> params = block.makeParams();
        for (const auto& [name, value] : one.in)
            set(*params, name, value);
        block.calculate(*params);
        for (const auto& [name, value] : one.out)
            compare(*params, name, value, one.where);
        for (const auto& [name, value] : one.pulled) {
            constexpr Block::Type types[] = {Block::Type::integer, Block::Type::real, Block::Type::text};
            block.pull(*params, types[value.index()], name);
            compare(*params, name, value, one.where);
        }
    }
};

TEST_P(Vectors, Agree)
{
    std::vector<std::string> own;
    for (const ZelmCellInfo& cell : block.cells())
        own.emplace_back(cell.name);

    const std::vector<VectorSet> sets = readVectors(GetParam().name);
    EXPECT_FALSE(sets.empty());
    for (const VectorSet& set : sets) {
        EXPECT_EQ(own, set.cells) << set.directory;
        EXPECT_FALSE(set.cases.empty()) << set.directory;
        const DataDirVariable variable(set.directory);
        block.reload();
        for (const VectorCase& one : set.cases) {
            ASSERT_EQ(one.out.size(), own.size()) << one.where;
            run(one);
            if (HasFailure())
                return; // the first bad case tells enough
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Vectors, testing::ValuesIn(allBlocks()), nameOfBlock);

} // namespace zelm::test::vectorsTest
