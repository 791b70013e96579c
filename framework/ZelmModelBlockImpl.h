#pragma once

// The bodies of ZelmModelBlock, for the one source file that instantiates it for a block.

#include "framework/ZelmModelBlock.h"

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
    static_cast<const Derived&>(*this).pullOutputs(params, data);
}
