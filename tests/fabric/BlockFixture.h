#pragma once

#include "support/BlockContract.h"
#include "support/Vectors.h"

#include <string_view>

namespace zelm::test {

/// A block on hand-made tables.
template <class Model>
class BlockFixture : public testing::Test {
protected:
    using Params = typename Model::Params;
    using Data = typename Model::Data;

    explicit BlockFixture(std::string_view tables)
    {
        load(tables);
    }

    void load(std::string_view tables)
    {
        m_directory.write(Data::name, tables);
        Data::getMutableGlobal().reset();
    }

    void calculate()
    {
        model.calculate(params);
    }

    Params params;
    const Model& model = Model::getGlobal();
    const Data& data = Data::getGlobal();

private:
    TemporaryDataDirectory m_directory;
};

/// Runs a block on the shipped data.
template <class Model>
void calculateOnShippedData(typename Model::Params& params)
{
    const DataDirVariable variable(shippedDataDirectory());
    Model::Data::getMutableGlobal().reset();
    Model::getGlobal().calculate(params);
}

} // namespace zelm::test
