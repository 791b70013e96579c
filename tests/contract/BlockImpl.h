#pragma once

#include "contract/Block.h"

#include "framework/ZelmRecalculation.h"

#include <bit>
#include <cstdint>

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

    // Calls visit with the cell's enumerator, whose type tells the array.
    template <class Visit>
    static void at(const ZelmCellInfo& cell, Visit visit)
    {
        if (cell.type == Type::integer)
            visit(static_cast<typename Params::IntEnum>(cell.ordinal));
        else if (cell.type == Type::real)
            visit(static_cast<typename Params::FloatEnum>(cell.ordinal));
        else
            visit(static_cast<typename Params::StringEnum>(cell.ordinal));
    }

    class RecalculatedOf final : public Recalculated {
    public:
        explicit RecalculatedOf(Params& params) : m_recalculation(Model::getGlobal(), params, Data::getGlobal()) {}

        void set(const ZelmCellInfo& cell, ZelmParams& from) override
        {
            at(cell, [&](auto input) { m_recalculation.set(input, of(from)[input]); });
        }
        void recalculate() override
        {
            m_recalculation.recalculate();
        }
        void recalculate(const ZelmCellInfo& wanted) override
        {
            const CellRef cell{wanted.type, wanted.ordinal};
            m_recalculation.recalculate({&cell, 1});
        }

    private:
        zelm::Recalculation<Model> m_recalculation;
    };

    static std::unique_ptr<Recalculated> recalculation(ZelmParams& params)
    {
        return std::make_unique<RecalculatedOf>(of(params));
    }

    static void copyCell(const ZelmCellInfo& cell, ZelmParams& from, ZelmParams& to)
    {
        at(cell, [&](auto input) { of(to)[input] = of(from)[input]; });
    }

    static bool same(float a, float b)
    {
        return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b) || (a != a && b != b);
    }
    template <class T>
    static bool same(const T& a, const T& b)
    {
        return a == b;
    }

    static std::string show(const std::string& value)
    {
        return value;
    }
    template <class T>
    static std::string show(T value)
    {
        return std::to_string(value);
    }

    static std::string difference(const ZelmCellInfo& cell, ZelmParams& a, ZelmParams& b)
    {
        std::string found;
        at(cell, [&](auto ordinal) {
            const auto& left = of(a)[ordinal];
            const auto& right = of(b)[ordinal];
            if (!same(left, right))
                found = std::string(cell.name) + ": " + show(left) + " and " + show(right);
        });
        return found;
    }

    static std::string firstDifference(ZelmParams& a, ZelmParams& b)
    {
        for (const ZelmCellInfo& cell : Params::cells()) {
            if (std::string found = difference(cell, a, b); !found.empty())
                return found;
        }
        return {};
    }
};

template <class Model>
const Block& block()
{
    using Of = BlockOf<Model>;
    static constexpr Block erased{Of::Params::name,  Of::Data::name, Model::name,         Of::Params::cells,
                                  Of::Data::tables,  Of::classNames, Of::nameLists,       Of::reload,
                                  Of::keysOf,        Of::makeParams, Of::thereAndBack,    Of::intCell,
                                  Of::floatCell,     Of::stringCell, Of::calculate,       Of::pull,
                                  Of::recalculation, Of::copyCell,   Of::firstDifference, Of::difference};
    return erased;
}

} // namespace zelm::test
