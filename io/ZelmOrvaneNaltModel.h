#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmIoBuffers.h"
#include "io/ZelmOrvaneNaltData.h"
#include "io/ZelmOrvaneNaltParams.h"

class ZelmOrvaneNaltModel;
extern template class ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData>;

/// Power of a group of high-density I/O buffers, per pin: on chip by rail, and off chip. Every standard's cells are
/// computed; the names of the group's two standards select which of them reach the outputs.
class ZELM_EXPORT ZelmOrvaneNaltModel final
    : public ZelmModelBlock<ZelmOrvaneNaltModel, ZelmOrvaneNaltParams, ZelmOrvaneNaltData>
{
public:
    static constexpr std::string_view name = "ZelmOrvaneNaltModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneNaltCells.def"
#include "framework/ZelmCellFunctions.inc"

    void pullOutputs(Params& params, const Data& data) const;

private:
    struct Input;
    struct Output;
    struct Receiver;
    struct Driver;
    struct Rows;
    using InputPower = zelm::io::SelectedPower<ZelmOrvaneNaltModel, Input>;
    using OutputPower = zelm::io::SelectedPower<ZelmOrvaneNaltModel, Output>;

    float inputShare(Params& params, const Data& data) const;

    template <class Buffer, class Metric, class Formula>
    static float computed(const Buffer& buffer, Metric metric, Formula formula);

    float inputAcVccauxCurrent(const Input& standard, Params& params, const Data& data) const;
    float inputAcVccioCurrent(const Input& standard, Params& params, const Data& data) const;
    float inputAcVccoCurrent(const Input& standard, Params& params, const Data& data) const;
    float inputDcVccauxCurrent(const Input& standard, Params& params, const Data& data) const;
    float inputDcVccioCurrent(const Input& standard, Params& params, const Data& data) const;
    float inputDcVccoCurrent(const Input& standard, Params& params, const Data& data) const;
    float inputOffchipPower(const Input& standard, Params& params, const Data& data) const;
    float inputOnchipPower(const Input& standard, Params& params, const Data& data) const;
    float inputVoh(const Input& standard, Params& params, const Data& data) const;
    float inputVol(const Input& standard, Params& params, const Data& data) const;
    float inputPower(const InputPower& power, Params& params, const Data& data) const;

    float outputAcVccauxCurrent(const Output& standard, Params& params, const Data& data) const;
    float outputAcVccioCurrent(const Output& standard, Params& params, const Data& data) const;
    float outputAcVccoCurrent(const Output& standard, Params& params, const Data& data) const;
    float outputDcVccauxCurrent(const Output& standard, Params& params, const Data& data) const;
    float outputDcVccioCurrent(const Output& standard, Params& params, const Data& data) const;
    float outputDcVccoCurrent(const Output& standard, Params& params, const Data& data) const;
    float outputOffchipPower(const Output& standard, Params& params, const Data& data) const;
    float outputOnchipPower(const Output& standard, Params& params, const Data& data) const;
    float outputVoh(const Output& standard, Params& params, const Data& data) const;
    float outputVol(const Output& standard, Params& params, const Data& data) const;
    float outputPower(const OutputPower& power, Params& params, const Data& data) const;

    void pullUnselectedCells(Params& params, const Data& data) const;
};
