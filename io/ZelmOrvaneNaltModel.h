#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmIoBuffers.h"
#include "io/ZelmOrvaneNaltData.h"
#include "io/ZelmOrvaneNaltParams.h"

class ZELM_EXPORT ZelmOrvaneNaltModel;
extern template class ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData>;

/// Power of a group of high-density I/O buffers, per pin: on chip by rail, and off chip. Every standard's cells are
/// computed; the names of the group's two standards select which of them reach the outputs.
class ZELM_EXPORT ZelmOrvaneNaltModel final
    : public ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneNaltModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    template <class, class>
    friend struct zelm::io::Buffer;
    struct Input;
    struct Output;
    struct Receiver;
    struct Driver;
    struct Rows;
    using InputPower = zelm::io::SelectedPower<ZelmOrvaneNaltModel, Input>;
    using OutputPower = zelm::io::SelectedPower<ZelmOrvaneNaltModel, Output>;

    float inputShare(Params& params, const Data& data) const;

    template <class Standard>
    float supplyOf(const Standard&, Params& params, const Data& data) const
    {
        return getVcco(params, data);
    }

    float acVccauxCurrent(const Input& standard, Params& params, const Data& data) const;
    float acVccioCurrent(const Input& standard, Params& params, const Data& data) const;
    float acVccoCurrent(const Input& standard, Params& params, const Data& data) const;
    float dcVccauxCurrent(const Input& standard, Params& params, const Data& data) const;
    float dcVccioCurrent(const Input& standard, Params& params, const Data& data) const;
    float dcVccoCurrent(const Input& standard, Params& params, const Data& data) const;
    float offchipPower(const Input& standard, Params& params, const Data& data) const;
    float onchipPower(const Input& standard, Params& params, const Data& data) const;
    float voh(const Input& standard, Params& params, const Data& data) const;
    float vol(const Input& standard, Params& params, const Data& data) const;
    float inputPower(const InputPower& power, Params& params, const Data& data) const;

    float acVccauxCurrent(const Output& standard, Params& params, const Data& data) const;
    float acVccioCurrent(const Output& standard, Params& params, const Data& data) const;
    float acVccoCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccauxCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccioCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccoCurrent(const Output& standard, Params& params, const Data& data) const;
    float offchipPower(const Output& standard, Params& params, const Data& data) const;
    float onchipPower(const Output& standard, Params& params, const Data& data) const;
    float voh(const Output& standard, Params& params, const Data& data) const;
    float vol(const Output& standard, Params& params, const Data& data) const;
    float outputPower(const OutputPower& power, Params& params, const Data& data) const;

    void pullUnselectedCells(Params& params, const Data& data) const;
};
