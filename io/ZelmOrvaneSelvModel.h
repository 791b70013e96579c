#pragma once

#include "framework/ZelmModelBlock.h"
#include "io/ZelmIoBuffers.h"
#include "io/ZelmOrvaneSelvData.h"
#include "io/ZelmOrvaneSelvParams.h"

class ZELM_EXPORT ZelmOrvaneSelvModel;
extern template class ZelmModelBlock<ZelmOrvaneSelvModel, ZelmOrvaneSelvParams, ZelmOrvaneSelvData>;

/// Power of a group of high-performance I/O buffers, per pin: on chip by rail, and off chip. Every standard's cells are
/// computed; the names of the group's two standards select which of them reach the outputs.
class ZELM_EXPORT ZelmOrvaneSelvModel final
    : public ZelmModelBlock<ZelmOrvaneSelvModel, ZelmOrvaneSelvParams, ZelmOrvaneSelvData> {
public:
    static constexpr std::string_view name = "ZelmOrvaneSelvModel";

#define ZELM_CELL_ROWS "io/ZelmOrvaneSelvCells.def"
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
    using InputPower = zelm::io::SelectedPower<ZelmOrvaneSelvModel, Input>;
    using OutputPower = zelm::io::SelectedPower<ZelmOrvaneSelvModel, Output>;

    bool isMipiInput(Params& params, const Data& data) const;
    bool receives(Params& params, const Data& data) const;
    bool drivesLowPowerMipi(Params& params, const Data& data) const;
    float inputEnable(Params& params, const Data& data) const;
    float terminationEnable(Params& params, const Data& data) const;
    float outputEnable(Params& params, const Data& data) const;
    float outputToggles(Params& params, const Data& data) const;
    float outputLines(Params& params, const Data& data) const;

    template <class Standard>
    float supplyOf(const Standard& standard, Params&, const Data& data) const
    {
        return standard.table(data, "VCCO");
    }

    float acVccauxCurrent(const Input& standard, Params& params, const Data& data) const;
    float acVccioCurrent(const Input& standard, Params& params, const Data& data) const;
    float acVccoCurrent(const Input& standard, Params& params, const Data& data) const;
    float dcVccauxCurrent(const Input& standard, Params& params, const Data& data) const;
    float dcVccioCurrent(const Input& standard, Params& params, const Data& data) const;
    float dcVccoCurrent(const Input& standard, Params& params, const Data& data) const;
    float offchipPower(const Input& standard, Params& params, const Data& data) const;
    float onchipPower(const Input& standard, Params& params, const Data& data) const;
    float pw(const Input& standard, Params& params, const Data& data) const;
    float voh(const Input& standard, Params& params, const Data& data) const;
    float vol(const Input& standard, Params& params, const Data& data) const;
    float inputPower(const InputPower& power, Params& params, const Data& data) const;

    float acVccauxCurrent(const Output& standard, Params& params, const Data& data) const;
    float acVccioCurrent(const Output& standard, Params& params, const Data& data) const;
    float acVccoCurrent(const Output& standard, Params& params, const Data& data) const;
    float acVccoPredrvCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccauxCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccioCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccoCurrent(const Output& standard, Params& params, const Data& data) const;
    float dcVccoPredrvCurrent(const Output& standard, Params& params, const Data& data) const;
    float offchipPower(const Output& standard, Params& params, const Data& data) const;
    float onchipPower(const Output& standard, Params& params, const Data& data) const;
    float pw(const Output& standard, Params& params, const Data& data) const;
    float voh(const Output& standard, Params& params, const Data& data) const;
    float vol(const Output& standard, Params& params, const Data& data) const;
    float outputPower(const OutputPower& power, Params& params, const Data& data) const;

    void pullUnselectedCells(Params& params, const Data& data) const;
};
