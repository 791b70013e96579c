#pragma once

#include "support/BlockContract.h"
#include "support/Vectors.h"

#include <string>
#include <string_view>

namespace zelm::test {

/// Runs a block over a tiny hand-made file: the groups inside the block's own one.
template <class ModelT>
class HardBlockTest : public testing::Test {
protected:
    using Params = typename ModelT::Params;
    using Data = typename ModelT::Data;

    explicit HardBlockTest(std::string_view groups)
    {
        load(groups);
    }

    void load(std::string_view groups)
    {
        const std::string name(Data::name);
        m_directory.write(name, name + " : {" + std::string(groups) + "};");
        Data::getMutableGlobal().reset();
    }

    void calculate()
    {
        model.calculate(params);
    }

    Params params;
    const ModelT& model = ModelT::getGlobal();

private:
    TemporaryDataDirectory m_directory;
};

/// Runs a block over the data that the project ships.
template <class ModelT>
class ShippedDataTest : public testing::Test {
protected:
    ShippedDataTest()
    {
        ModelT::Data::getMutableGlobal().reset();
    }

    void calculate()
    {
        ModelT::getGlobal().calculate(params);
    }

private:
    DataDirVariable m_variable{shippedDataDirectory()};

protected:
    typename ModelT::Params params;
};

/// 2 to the power 2.3, the factor of a doubled supply: 10 to the power 2.3 x 0.301029995663981 = 0.692368990027156.
inline constexpr double kDoubledSupply = 4.924577653379664;

} // namespace zelm::test
