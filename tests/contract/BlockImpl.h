#pragma once

#include "contract/Block.h"

namespace zelm::test {

template <class Model>
struct BlockOf {
    using Params = typename Model::Params;
    using Data = typename Model::Data;
    using Type = Block::Type;

    static Params& of(ZelmParams& params)
    {
        return static_cast<Params&>(params);
    }

    static std::string classNames()
    {
        return Params().className() + " " + Data::getGlobal().className() + " " + Model::getGlobal().className();
    }

    static std::vector<std::vector<std::string>> nameLists()
    {
        std::vector<std::vector<std::string>> lists(9);
        Params::getIntUserInputNames(lists[0]);
        Params::getFloatUserInputNames(lists[1]);
        Params::getStringUserInputNames(lists[2]);
        Params::getIntModelOutputNames(lists[3]);
        Params::getFloatModelOutputNames(lists[4]);
        Params::getStringModelOutputNames(lists[5]);
        Params::getIntIntermediateCalculationNames(lists[6]);
        Params::getFloatIntermediateCalculationNames(lists[7]);
        Params::getStringIntermediateCalculationNames(lists[8]);
        return lists;
    }

    static bool reload()
    {
        return Data::getMutableGlobal().reset();
    }

    static std::vector<std::string> keysOf(std::string_view group)
    {
        return Data::getGlobal().getCfgKeys({std::string(group)}, true);
    }

    static std::unique_ptr<ZelmParams> makeParams()
    {
        return std::make_unique<Params>();
    }

    static std::string thereAndBack(Type type, const std::string& name)
    {
        if (type == Type::integer)
            return Params::enum_to_string(Params::string_to_int_enum(name));
        if (type == Type::real)
            return Params::enum_to_string(Params::string_to_float_enum(name));
        return Params::enum_to_string(Params::string_to_string_enum(name));
    }

    static int& intCell(ZelmParams& params, const std::string& name)
    {
        return of(params)[Params::string_to_int_enum(name)];
    }

    static float& floatCell(ZelmParams& params, const std::string& name)
    {
        return of(params)[Params::string_to_float_enum(name)];
    }

    static std::string& stringCell(ZelmParams& params, const std::string& name)
    {
        return of(params)[Params::string_to_string_enum(name)];
    }

    static void calculate(ZelmParams& params)
    {
        Model::getGlobal().calculate(of(params));
    }

    static void pull(ZelmParams& params, Type type, const std::string& name)
    {
        const Model& model = Model::getGlobal();
        if (type == Type::integer)
            model.pull(Params::string_to_int_enum(name), of(params), Data::getGlobal());
        else if (type == Type::real)
            model.pull(Params::string_to_float_enum(name), of(params), Data::getGlobal());
        else
            model.pull(Params::string_to_string_enum(name), of(params), Data::getGlobal());
    }
};

template <class Model>
const Block& block()
{
    using Of = BlockOf<Model>;
    static constexpr Block erased{Of::Params::name, Of::Data::name, Model::name,      Of::Params::cells,
                                  Of::Data::tables, Of::classNames, Of::nameLists,    Of::reload,
                                  Of::keysOf,       Of::makeParams, Of::thereAndBack, Of::intCell,
                                  Of::floatCell,    Of::stringCell, Of::calculate,    Of::pull};
    return erased;
}

} // namespace zelm::test
