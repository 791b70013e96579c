#pragma once

// The bodies of ZelmModelBlock, for the one source file that instantiates it for a block.

#include "framework/ZelmSheet.h"

template <class Derived, class ParamsT, class DataT>
const Derived& ZelmModelBlock<Derived, ParamsT, DataT>::getGlobal()
{
    return getMutableGlobal();
}

template <class Derived, class ParamsT, class DataT>
Derived& ZelmModelBlock<Derived, ParamsT, DataT>::getMutableGlobal()
{
    static Derived instance;
    return instance;
}

template <class Derived, class ParamsT, class DataT>
std::string ZelmModelBlock<Derived, ParamsT, DataT>::className() const
{
    return std::string(Derived::name);
}

template <class Derived, class ParamsT, class DataT>
void ZelmModelBlock<Derived, ParamsT, DataT>::calculate(Params& params) const
{
    const Data& data = Data::getGlobal();
    params.resetIntermediateCalculations();
    params.resetModelOutputs();
    pullOutputs(params, data);
}

template <class Derived, class ParamsT, class DataT>
void ZelmModelBlock<Derived, ParamsT, DataT>::pullOutputs(Params& params, const Data& data) const
{
    typename Derived::Sheet(params, data).pullOutputs();
}

template <class Derived, class ParamsT, class DataT>
void ZelmModelBlock<Derived, ParamsT, DataT>::pull(typename Params::IntEnum cell, Params& params,
                                                   const Data& data) const
{
    if (cell != Params::LastInt) // the one marker that has no place among the cells
        pulled(cell, params, data);
}

template <class Derived, class ParamsT, class DataT>
void ZelmModelBlock<Derived, ParamsT, DataT>::pull(typename Params::FloatEnum cell, Params& params,
                                                   const Data& data) const
{
    if (cell != Params::LastFloat)
        pulled(cell, params, data);
}

template <class Derived, class ParamsT, class DataT>
void ZelmModelBlock<Derived, ParamsT, DataT>::pull(typename Params::StringEnum cell, Params& params,
                                                   const Data& data) const
{
    if (cell != Params::LastString)
        typename Derived::Sheet(params, data).value(cell);
}

template <class Derived, class ParamsT, class DataT>
void ZelmModelBlock<Derived, ParamsT, DataT>::pull(std::span<const zelm::CellRef> cells, Params& params,
                                                   const Data& data) const
{
    using Type = ZelmCellInfo::Type;
    const typename Derived::Sheet sheet(params, data);
    for (const zelm::CellRef cell : cells) {
        if (cell.type == Type::integer)
            sheet.value(static_cast<typename Params::IntEnum>(cell.ordinal));
        else if (cell.type == Type::real)
            sheet.value(static_cast<typename Params::FloatEnum>(cell.ordinal));
        else
            sheet.value(static_cast<typename Params::StringEnum>(cell.ordinal));
    }
}

template <class Derived, class ParamsT, class DataT>
int ZelmModelBlock<Derived, ParamsT, DataT>::pulled(typename Params::IntEnum cell, Params& params, const Data& data)
{
    return typename Derived::Sheet(params, data).value(cell);
}

template <class Derived, class ParamsT, class DataT>
float ZelmModelBlock<Derived, ParamsT, DataT>::pulled(typename Params::FloatEnum cell, Params& params, const Data& data)
{
    return typename Derived::Sheet(params, data).value(cell);
}

template <class Derived, class ParamsT, class DataT>
std::string ZelmModelBlock<Derived, ParamsT, DataT>::pulled(typename Params::StringEnum cell, Params& params,
                                                            const Data& data)
{
    return std::string(typename Derived::Sheet(params, data).value(cell).text());
}
