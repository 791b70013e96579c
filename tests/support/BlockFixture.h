#pragma once

#include "support/Bits.h"
#include "support/DataDirectory.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zelm::test {

/// A block over hand-made tables: the text between the braces of its data file.
template <class Model>
class BlockFixture : public testing::Test {
    TemporaryDataDirectory m_directory;

protected:
    using Params = typename Model::Params;
    using Data = typename Model::Data;

    explicit BlockFixture(std::string_view tables = {}) : data(load(tables)) {}

    const Data& load(std::string_view tables)
    {
        m_directory.write(Data::name, std::string(Data::name) + " : { " + std::string(tables) + " };");
        Data::getMutableGlobal().reset();
        return Data::getGlobal();
    }

    void calculate()
    {
        model.calculate(params);
    }

    Params params;
    const Model& model = Model::getGlobal();
    const Data& data;
};

/// A block over the data that the project ships.
template <class Model>
class ShippedBlockFixture : public testing::Test {
protected:
    using Params = typename Model::Params;

    ShippedBlockFixture()
    {
        Model::Data::getMutableGlobal().reset();
    }

    void calculate()
    {
        Model::getGlobal().calculate(params);
    }

private:
    DataDirVariable m_variable{shippedDataDirectory()};

protected:
    Params params;
};

/// The cells of a block over the data that the project ships.
template <class Model>
typename Model::Params calculateShipped(typename Model::Params params = {})
{
    const DataDirVariable variable(shippedDataDirectory());
    Model::Data::getMutableGlobal().reset();
    Model::getGlobal().calculate(params);
    return params;
}

/// The names of all float intermediates that end in suffix, in enum order.
template <class Params>
std::vector<std::string> floatIntermediatesEndingIn(std::string_view suffix)
{
    std::vector<std::string> names;
    Params::getFloatIntermediateCalculationNames(names);
    std::erase_if(names, [&](const std::string& name) { return !name.ends_with(suffix); });
    return names;
}

/// The joined names of a family's cells: every member with every metric, sorted.
inline std::vector<std::string> familyNames(std::initializer_list<std::string_view> members,
                                            std::initializer_list<std::string_view> metrics)
{
    std::vector<std::string> names;
    for (const std::string_view member : members) {
        for (const std::string_view metric : metrics)
            names.push_back(std::string(member) + std::string(metric));
    }
    std::sort(names.begin(), names.end());
    return names;
}

} // namespace zelm::test
