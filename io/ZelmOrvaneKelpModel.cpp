#include "io/ZelmOrvaneKelpModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvaneKelpModel, ZelmOrvaneKelpParams, ZelmOrvaneKelpData>;

namespace {

constexpr int kIosPerNibble = 6;

// Current of an I/O in use: its own slice, and its share of the spare slices, which stay powered but for a delta. More
// I/Os than the nibble has make the spare ones negative; no limit is enforced.
float currentPerIo(float ios, float slice, float delta, float spare, float clockFreq)
{
    return ios == 0.0f ? 0.0f : slice * clockFreq / 3.0f + (slice - delta) * spare * (clockFreq / 3.0f) / ios;
}

// Current of the spare slices beside I/Os of one kind, 0 where that kind is not in use.
float spareCurrent(float ios, float slice, float delta, float spare)
{
    return ios == 0.0f ? 0.0f : (slice - delta) * spare;
}

} // namespace

// A current of the table: its cell and its key.
struct ZelmOrvaneKelpModel::Slice {
    Params::FloatEnum cell;
    std::string_view key;
};

// clang-format off
struct ZelmOrvaneKelpModel::Slices {
    static constexpr Slice kRx        {Params::RX_BITSLICE_CURRENT,         "RX_BITSLICE_DATA"};
    static constexpr Slice kRxControl {Params::RX_BITSLICE_CONTROL_CURRENT, "RX_BITSLICE_CONTROL_DATA"};
    static constexpr Slice kRxDelta   {Params::RX_DP_DELTA_PER_BS_CURRENT,  "RX_DP_DELTA_PER_BS_DATA"};
    static constexpr Slice kTx        {Params::TX_BITSLICE_CURRENT,         "TX_BITSLICE_DATA"};
    static constexpr Slice kTxControl {Params::TX_BITSLICE_CONTROL_CURRENT, "TX_BITSLICE_CONTROL_DATA"};
    static constexpr Slice kTxDelta   {Params::TX_DP_DELTA_PER_BS_CURRENT,  "TX_DP_DELTA_PER_BS_DATA"};
    static constexpr Slice kTxTri     {Params::TX_BITSLICE_TRI_CURRENT,     "TX_BITSLICE_TRI_DATA"};
};
// clang-format on

#define ZELM_MODEL ZelmOrvaneKelpModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneKelpCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneKelpModel::pullOutputs(Params& params, const Data& data) const
{
    calculateTeskTotalPower(params, data);
    calculateRpTotalPowerCoe(params, data);
    calculateRpTotalPower(params, data);
    calculateRxPower(params, data);
    calculateTxPower(params, data);
    calculateRxtxPower(params, data);
    calculateNumIosInNibble(params, data);
    calculatePowerScaling(params, data);
}

float ZelmOrvaneKelpModel::tabulated(const Slice& slice, Params& params, const Data& data) const
{
    return once(params[slice.cell], [&] { return data.findBitsliceData(slice.key); });
}

float ZelmOrvaneKelpModel::spareSlices(Params& params, const Data& data) const
{
    const int rx = getNumRxIos(params, data);
    const int tx = getNumTxIos(params, data);
    const int rxtx = getNumRxtxIos(params, data);
    return static_cast<float>(zelm::wrapSubtract(zelm::wrapSubtract(zelm::wrapSubtract(kIosPerNibble, rx), tx), rxtx));
}

int ZelmOrvaneKelpModel::calculateNumIosInNibble(Params& params, const Data& data) const
{
    return once(params[Params::NUM_IOS_IN_NIBBLE], [&] {
        const int rx = getNumRxIos(params, data);
        const int tx = getNumTxIos(params, data);
        const int rxtx = getNumRxtxIos(params, data);
        return zelm::wrapAdd(zelm::wrapAdd(rx, tx), rxtx);
    });
}

float ZelmOrvaneKelpModel::calculatePowerScaling(Params& params, const Data& data) const
{
    return once(params[Params::POWER_SCALING], [&] {
        const float vccIo = getVccIo(params, data);
        const float simVoltage = data.findBitsliceData("SIM_VOLTAGE");
        return zelm::ratioOrZero(vccIo * vccIo, simVoltage);
    });
}

int ZelmOrvaneKelpModel::calculateDataWidthValue(Params& params, const Data& data) const
{
    return once(params[Params::DATA_WIDTH_VALUE], [&] {
        const auto tx = static_cast<float>(getTxDataWidth(params, data));
        const auto rx = static_cast<float>(getRxDataWidth(params, data));
        const int wider = zelm::truncate(ZelmHelperUtils::MAX(tx, rx));
        return wider <= 2 ? 4 : wider;
    });
}

float ZelmOrvaneKelpModel::calculateRxtxBitsliceCurrent(Params& params, const Data& data) const
{
    return once(params[Params::RXTX_BITSLICE_CURRENT], [&] {
        const float tx = calculateTxBitsliceCurrent(params, data);
        const float rx = calculateRxBitsliceCurrent(params, data);
        return ZelmHelperUtils::MAX(tx, rx);
    });
}

float ZelmOrvaneKelpModel::calculateTxTriCurrentPerIo(Params& params, const Data& data) const
{
    return once(params[Params::TX_TRI_CURRENT_PER_IO], [&] {
        const float tristate = calculateTxBitsliceTriCurrent(params, data);
        const float clockFreq = getClockFreq(params, data);
        const auto width = static_cast<float>(calculateDataWidthValue(params, data));
        const int tx = getNumTxIos(params, data);
        const int rxtx = getNumRxtxIos(params, data);
        const int drivers = zelm::wrapAdd(tx, rxtx);
        return drivers < 1 ? 0.0f : tristate * zelm::ratioOrZero(clockFreq, width) / static_cast<float>(drivers);
    });
}

float ZelmOrvaneKelpModel::calculateBitsliceControlCurrentPerIo(Params& params, const Data& data) const
{
    return once(params[Params::BITSLICE_CONTROL_CURRENT_PER_IO], [&] {
        const int ios = calculateNumIosInNibble(params, data);
        const float rxControl = calculateRxBitsliceControlCurrent(params, data);
        const float txControl = calculateTxBitsliceControlCurrent(params, data);
        const float clockFreq = getClockFreq(params, data);
        const int rx = getNumRxIos(params, data);
        const int rxtx = getNumRxtxIos(params, data);
        const float control = zelm::wrapAdd(rx, rxtx) < 1 ? txControl : rxControl;
        return ios < 1 ? 0.0f : control * clockFreq / static_cast<float>(ios);
    });
}

float ZelmOrvaneKelpModel::calculateRxCurrentPerIo(Params& params, const Data& data) const
{
    return once(params[Params::RX_CURRENT_PER_IO], [&] {
        const auto ios = static_cast<float>(getNumRxIos(params, data));
        const float slice = calculateRxBitsliceCurrent(params, data);
        const float delta = calculateRxDpDeltaPerBsCurrent(params, data);
        const float spare = spareSlices(params, data);
        return currentPerIo(ios, slice, delta, spare, getClockFreq(params, data));
    });
}

float ZelmOrvaneKelpModel::calculateTxCurrentPerIo(Params& params, const Data& data) const
{
    return once(params[Params::TX_CURRENT_PER_IO], [&] {
        const auto ios = static_cast<float>(getNumTxIos(params, data));
        const float slice = calculateTxBitsliceCurrent(params, data);
        const float delta = calculateTxDpDeltaPerBsCurrent(params, data);
        const float spare = spareSlices(params, data);
        return currentPerIo(ios, slice, delta, spare, getClockFreq(params, data));
    });
}

float ZelmOrvaneKelpModel::calculateRxtxCurrentPerIo(Params& params, const Data& data) const
{
    return once(params[Params::RXTX_CURRENT_PER_IO], [&] {
        const auto ios = static_cast<float>(getNumRxtxIos(params, data));
        const float slice = calculateRxtxBitsliceCurrent(params, data);
        const float txDelta = calculateTxDpDeltaPerBsCurrent(params, data);
        const float rxDelta = calculateRxDpDeltaPerBsCurrent(params, data);
        const float spare = spareSlices(params, data);
        return currentPerIo(ios, slice, (txDelta + rxDelta) * 0.5f, spare, getClockFreq(params, data));
    });
}

float ZelmOrvaneKelpModel::calculateRxPowerPerIo(Params& params, const Data& data) const
{
    return once(params[Params::RX_POWER_PER_IO], [&] {
        const float slices = calculateRxCurrentPerIo(params, data);
        const float control = calculateBitsliceControlCurrentPerIo(params, data);
        const float scaling = calculatePowerScaling(params, data);
        return (slices + control) * scaling;
    });
}

float ZelmOrvaneKelpModel::calculateTxPowerPerIo(Params& params, const Data& data) const
{
    return once(params[Params::TX_POWER_PER_IO], [&] {
        const float slices = calculateTxCurrentPerIo(params, data);
        return drivingPower(slices, params, data);
    });
}

float ZelmOrvaneKelpModel::calculateRxtxPowerPerIo(Params& params, const Data& data) const
{
    return once(params[Params::RXTX_POWER_PER_IO], [&] {
        const float slices = calculateRxtxCurrentPerIo(params, data);
        return drivingPower(slices, params, data);
    });
}

// Power of an I/O that drives, from the current of its slices.
float ZelmOrvaneKelpModel::drivingPower(float slices, Params& params, const Data& data) const
{
    const float tristate = calculateTxTriCurrentPerIo(params, data);
    const float control = calculateBitsliceControlCurrentPerIo(params, data);
    const float scaling = calculatePowerScaling(params, data);
    return (slices + tristate + control) * scaling;
}

float ZelmOrvaneKelpModel::calculateRxPower(Params& params, const Data& data) const
{
    return once(params[Params::RX_POWER], [&] {
        const float perIo = calculateRxPowerPerIo(params, data);
        return perIo * static_cast<float>(getNumRxIos(params, data));
    });
}

float ZelmOrvaneKelpModel::calculateTxPower(Params& params, const Data& data) const
{
    return once(params[Params::TX_POWER], [&] {
        const float perIo = calculateTxPowerPerIo(params, data);
        return perIo * static_cast<float>(getNumTxIos(params, data));
    });
}

float ZelmOrvaneKelpModel::calculateRxtxPower(Params& params, const Data& data) const
{
    return once(params[Params::RXTX_POWER], [&] {
        const float perIo = calculateRxtxPowerPerIo(params, data);
        return perIo * static_cast<float>(getNumRxtxIos(params, data));
    });
}

float ZelmOrvaneKelpModel::calculateRpTotalPower(Params& params, const Data& data) const
{
    return once(params[Params::RP_TOTAL_POWER], [&] {
        const float rx = calculateRxPower(params, data);
        const float tx = calculateTxPower(params, data);
        const float rxtx = calculateRxtxPower(params, data);
        return rx + tx + rxtx;
    });
}

float ZelmOrvaneKelpModel::calculateRpTotalPowerCoe(Params& params, const Data& data) const
{
    return once(params[Params::RP_TOTAL_POWER_COE], [&] {
        const auto rx = static_cast<float>(getNumRxIos(params, data));
        const auto tx = static_cast<float>(getNumTxIos(params, data));
        const auto rxtx = static_cast<float>(getNumRxtxIos(params, data));
        const float clockFreq = getClockFreq(params, data);
        const float spare = spareSlices(params, data);
        const float rxSlice = calculateRxBitsliceCurrent(params, data);
        const float rxDelta = calculateRxDpDeltaPerBsCurrent(params, data);
        const float txSlice = calculateTxBitsliceCurrent(params, data);
        const float txDelta = calculateTxDpDeltaPerBsCurrent(params, data);
        const float rxtxSlice = calculateRxtxBitsliceCurrent(params, data);
        const float tristateSlice = calculateTxBitsliceTriCurrent(params, data);
        const auto width = static_cast<float>(calculateDataWidthValue(params, data));
        const float rxControl = calculateRxBitsliceControlCurrent(params, data);
        const float txControl = calculateTxBitsliceControlCurrent(params, data);
        const float scaling = calculatePowerScaling(params, data);

        const float rxSlices = rx * rxSlice;
        const float txSlices = tx * txSlice;
        const float rxtxSlices = rxtx * rxtxSlice;
        const float rxSpare = spareCurrent(rx, rxSlice, rxDelta, spare);
        const float txSpare = spareCurrent(tx, txSlice, txDelta, spare);
        const float rxtxSpare = spareCurrent(rxtx, rxtxSlice, (txDelta + rxDelta) * 0.5f, spare);
        const float slices = rxSlices + rxSpare + txSlices + txSpare + rxtxSlices + rxtxSpare;
        const bool receives = rx != 0.0f || rxtx != 0.0f;
        const bool drives = tx != 0.0f || rxtx != 0.0f;
        const float tristate = drives ? tristateSlice : 0.0f;
        const float control = receives ? rxControl : drives ? txControl : 0.0f;
        const float current = slices * clockFreq / 3.0f + zelm::ratioOrZero(tristate * clockFreq, width);
        return (control * clockFreq + current) * scaling;
    });
}

float ZelmOrvaneKelpModel::calculateTeskTotalPower(Params& params, const Data& data) const
{
    return once(params[Params::TESK_TOTAL_POWER], [&] {
        const int rx = getNumRxIos(params, data);
        const int tx = getNumTxIos(params, data);
        const int rxtx = getNumRxtxIos(params, data);
        const float slice = calculateRxtxBitsliceCurrent(params, data);
        const float clockFreq = getClockFreq(params, data);
        const float tristateSlice = calculateTxBitsliceTriCurrent(params, data);
        const auto width = static_cast<float>(getTxDataWidth(params, data));
        const float control = calculateRxBitsliceControlCurrent(params, data);
        const float scaling = calculatePowerScaling(params, data);

        const int ios = zelm::wrapAdd(zelm::wrapAdd(rx, tx), rxtx);
        const int nibbles = ZelmHelperUtils::QUOTIENT(ios, kIosPerNibble) + (ios % kIosPerNibble != 0 ? 1 : 0);
        const float slices = static_cast<float>(ios) * slice * clockFreq / 3.0f;
        const float perNibble = control * clockFreq + zelm::ratioOrZero(tristateSlice * clockFreq, width);
        return (static_cast<float>(nibbles) * perNibble + slices) * scaling;
    });
}
