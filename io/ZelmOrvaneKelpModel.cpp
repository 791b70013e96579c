#include "io/ZelmOrvaneKelpModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneKelpModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneKelpCells.def"
#define ZELM_TABLE_ROWS "io/ZelmOrvaneKelpTables.def"

namespace {

using Params = ZelmOrvaneKelpParams;
using zelm::Key;

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

// A current of the table: its cell and its key.
struct Slice {
    Params::FloatEnum current;
    Key key;
};
// clang-format off
constexpr Slice kRx       {Params::RX_BITSLICE_CURRENT,         "RX_BITSLICE_DATA"};
constexpr Slice kRxControl{Params::RX_BITSLICE_CONTROL_CURRENT, "RX_BITSLICE_CONTROL_DATA"};
constexpr Slice kRxDelta  {Params::RX_DP_DELTA_PER_BS_CURRENT,  "RX_DP_DELTA_PER_BS_DATA"};
constexpr Slice kTx       {Params::TX_BITSLICE_CURRENT,         "TX_BITSLICE_DATA"};
constexpr Slice kTxControl{Params::TX_BITSLICE_CONTROL_CURRENT, "TX_BITSLICE_CONTROL_DATA"};
constexpr Slice kTxDelta  {Params::TX_DP_DELTA_PER_BS_CURRENT,  "TX_DP_DELTA_PER_BS_DATA"};
constexpr Slice kTxTri    {Params::TX_BITSLICE_TRI_CURRENT,     "TX_BITSLICE_TRI_DATA"};
// clang-format on

} // namespace

struct ZelmOrvaneKelpModel::Sheet : zelm::Sheet<ZelmOrvaneKelpModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        TeskTotalPower();
        RpTotalPowerCoe();
        RpTotalPower();
        RxPower();
        TxPower();
        RxtxPower();
        NumIosInNibble();
        PowerScaling();
    }

    float current(const Slice& slice) const
    {
        return findBitsliceData(slice.key);
    }

    float spareSlices() const
    {
        const int rx = NumRxIos();
        const int tx = NumTxIos();
        const int rxtx = NumRxtxIos();
        return static_cast<float>(
            zelm::wrapSubtract(zelm::wrapSubtract(zelm::wrapSubtract(kIosPerNibble, rx), tx), rxtx));
    }

    int computeNumIosInNibble() const
    {
        const int rx = NumRxIos();
        const int tx = NumTxIos();
        const int rxtx = NumRxtxIos();
        return zelm::wrapAdd(zelm::wrapAdd(rx, tx), rxtx);
    }

    float computePowerScaling() const
    {
        const float vccIo = VccIo();
        const float simVoltage = findBitsliceData("SIM_VOLTAGE");
        return zelm::ratioOrZero(vccIo * vccIo, simVoltage);
    }

    int computeDataWidthValue() const
    {
        const auto tx = static_cast<float>(TxDataWidth());
        const auto rx = static_cast<float>(RxDataWidth());
        const int wider = zelm::truncate(MAX(tx, rx));
        return wider <= 2 ? 4 : wider;
    }

    float computeRxtxBitsliceCurrent() const
    {
        const float tx = TxBitsliceCurrent();
        const float rx = RxBitsliceCurrent();
        return MAX(tx, rx);
    }

    float computeTxTriCurrentPerIo() const
    {
        const float tristate = TxBitsliceTriCurrent();
        const float clockFreq = ClockFreq();
        const auto width = static_cast<float>(DataWidthValue());
        const int tx = NumTxIos();
        const int rxtx = NumRxtxIos();
        const int drivers = zelm::wrapAdd(tx, rxtx);
        return drivers < 1 ? 0.0f : tristate * zelm::ratioOrZero(clockFreq, width) / static_cast<float>(drivers);
    }

    float computeBitsliceControlCurrentPerIo() const
    {
        const int ios = NumIosInNibble();
        const float rxControl = RxBitsliceControlCurrent();
        const float txControl = TxBitsliceControlCurrent();
        const float clockFreq = ClockFreq();
        const int rx = NumRxIos();
        const int rxtx = NumRxtxIos();
        const float control = zelm::wrapAdd(rx, rxtx) < 1 ? txControl : rxControl;
        return ios < 1 ? 0.0f : control * clockFreq / static_cast<float>(ios);
    }

    float computeRxCurrentPerIo() const
    {
        const auto ios = static_cast<float>(NumRxIos());
        const float slice = RxBitsliceCurrent();
        const float delta = RxDpDeltaPerBsCurrent();
        const float spare = spareSlices();
        return currentPerIo(ios, slice, delta, spare, ClockFreq());
    }

    float computeTxCurrentPerIo() const
    {
        const auto ios = static_cast<float>(NumTxIos());
        const float slice = TxBitsliceCurrent();
        const float delta = TxDpDeltaPerBsCurrent();
        const float spare = spareSlices();
        return currentPerIo(ios, slice, delta, spare, ClockFreq());
    }

    float computeRxtxCurrentPerIo() const
    {
        const auto ios = static_cast<float>(NumRxtxIos());
        const float slice = RxtxBitsliceCurrent();
        const float txDelta = TxDpDeltaPerBsCurrent();
        const float rxDelta = RxDpDeltaPerBsCurrent();
        const float spare = spareSlices();
        return currentPerIo(ios, slice, (txDelta + rxDelta) * 0.5f, spare, ClockFreq());
    }

    float computeRxPowerPerIo() const
    {
        const float slices = RxCurrentPerIo();
        const float control = BitsliceControlCurrentPerIo();
        const float scaling = PowerScaling();
        return (slices + control) * scaling;
    }

    float computeTxPowerPerIo() const
    {
        const float slices = TxCurrentPerIo();
        return drivingPower(slices);
    }

    float computeRxtxPowerPerIo() const
    {
        const float slices = RxtxCurrentPerIo();
        return drivingPower(slices);
    }

    // Power of an I/O that drives, from the current of its slices.
    float drivingPower(float slices) const
    {
        const float tristate = TxTriCurrentPerIo();
        const float control = BitsliceControlCurrentPerIo();
        const float scaling = PowerScaling();
        return (slices + tristate + control) * scaling;
    }

    float computeRxPower() const
    {
        const float perIo = RxPowerPerIo();
        return perIo * static_cast<float>(NumRxIos());
    }

    float computeTxPower() const
    {
        const float perIo = TxPowerPerIo();
        return perIo * static_cast<float>(NumTxIos());
    }

    float computeRxtxPower() const
    {
        const float perIo = RxtxPowerPerIo();
        return perIo * static_cast<float>(NumRxtxIos());
    }

    float computeRpTotalPower() const
    {
        const float rx = RxPower();
        const float tx = TxPower();
        const float rxtx = RxtxPower();
        return rx + tx + rxtx;
    }

    float computeRpTotalPowerCoe() const
    {
        const auto rx = static_cast<float>(NumRxIos());
        const auto tx = static_cast<float>(NumTxIos());
        const auto rxtx = static_cast<float>(NumRxtxIos());
        const float clockFreq = ClockFreq();
        const float spare = spareSlices();
        const float rxSlice = RxBitsliceCurrent();
        const float rxDelta = RxDpDeltaPerBsCurrent();
        const float txSlice = TxBitsliceCurrent();
        const float txDelta = TxDpDeltaPerBsCurrent();
        const float rxtxSlice = RxtxBitsliceCurrent();
        const float tristateSlice = TxBitsliceTriCurrent();
        const auto width = static_cast<float>(DataWidthValue());
        const float rxControl = RxBitsliceControlCurrent();
        const float txControl = TxBitsliceControlCurrent();
        const float scaling = PowerScaling();

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
    }

    float computeTeskTotalPower() const
    {
        const int rx = NumRxIos();
        const int tx = NumTxIos();
        const int rxtx = NumRxtxIos();
        const float slice = RxtxBitsliceCurrent();
        const float clockFreq = ClockFreq();
        const float tristateSlice = TxBitsliceTriCurrent();
        const auto width = static_cast<float>(TxDataWidth());
        const float control = RxBitsliceControlCurrent();
        const float scaling = PowerScaling();

        const int ios = zelm::wrapAdd(zelm::wrapAdd(rx, tx), rxtx);
        const int nibbles = QUOTIENT(ios, kIosPerNibble) + (ios % kIosPerNibble != 0 ? 1 : 0);
        const float slices = static_cast<float>(ios) * slice * clockFreq / 3.0f;
        const float perNibble = control * clockFreq + zelm::ratioOrZero(tristateSlice * clockFreq, width);
        return (static_cast<float>(nibbles) * perNibble + slices) * scaling;
    }
};

#include "framework/ZelmModelBodies.inc"
