#include "framework/ZelmOrvaneGauge.h"

#include "framework/ZelmDataBlockImpl.h"
#include "framework/ZelmModelBlockImpl.h"
#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneGaugeCells>;
template class ZelmParamBlock<ZelmOrvaneVoidCells>;
template class ZelmDataBlock<ZelmOrvaneGaugeData>;
template class ZelmModelBlock<ZelmOrvaneGaugeModel, ZelmOrvaneGaugeParams, ZelmOrvaneGaugeData>;

#define ZELM_CELLS ZelmOrvaneGaugeCells
#define ZELM_CELL_ROWS "framework/ZelmOrvaneGaugeCells.def"
#include "framework/ZelmCellInfos.inc"

#define ZELM_DATA ZelmOrvaneGaugeData
#define ZELM_TABLE_ROWS "framework/ZelmOrvaneGaugeTables.def"
#include "framework/ZelmTableInfos.inc"

// A probe with all that sets it apart. The cells of its metrics follow each other in enum order.
struct ZelmOrvaneGaugeModel::Probe {
    std::string_view key;
    float milliwattsPerUnit;
    Params::FloatEnum firstCell;

    enum Metric { gainMetric, powerMetric, readingMetric };
    float& cell(Params& params, Metric metric) const
    {
        return params[zelm::cellBehind(firstCell, metric)];
    }
};

const ZelmOrvaneGaugeModel::Probe ZelmOrvaneGaugeModel::kProbeA{"A", 3.0f, Params::PROBE_A_GAIN};
const ZelmOrvaneGaugeModel::Probe ZelmOrvaneGaugeModel::kProbeB{"B", 5.0f, Params::PROBE_B_GAIN};

#define ZELM_MODEL ZelmOrvaneGaugeModel
#define ZELM_CELL_ROWS "framework/ZelmOrvaneGaugeCells.def"
#include "framework/ZelmCellBodies.inc"

void ZelmOrvaneGaugeModel::pullOutputs(Params& params, const Data& data) const
{
    calculateTotal(params, data);
    calculateTotalSteps(params, data);
    viewVerdict(params, data);
}

float ZelmOrvaneGaugeModel::gain(const Probe& probe, Params& params, const Data& data) const
{
    return once(probe.cell(params, Probe::gainMetric),
                [&] { return ZelmHelperUtils::IFERROR(data.findGain(viewKind(params, data), probe.key), 1); });
}

float ZelmOrvaneGaugeModel::reading(const Probe& probe, Params& params, const Data& data) const
{
    return once(probe.cell(params, Probe::readingMetric), [&] {
        const float gainValue = gain(probe, params, data);
        const float span = getSpan(params, data);
        return gainValue * span;
    });
}

float ZelmOrvaneGaugeModel::power(const Probe& probe, Params& params, const Data& data) const
{
    return once(probe.cell(params, Probe::powerMetric), [&] {
        const float readingValue = reading(probe, params, data);
        return readingValue * probe.milliwattsPerUnit;
    });
}

float ZelmOrvaneGaugeModel::calculateTotal(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL], [&] {
        const float a = calculateProbeAPower(params, data);
        const float b = calculateProbeBPower(params, data);
        return a + b;
    });
}

int ZelmOrvaneGaugeModel::calculateSteps(Params& params, const Data& data) const
{
    return once(params[Params::STEPS], [&] { return zelm::truncate(calculateTotal(params, data)); });
}

int ZelmOrvaneGaugeModel::calculateTotalSteps(Params& params, const Data& data) const
{
    return once(params[Params::TOTAL_STEPS],
                [&] { return zelm::wrapMultiply(getCount(params, data), calculateSteps(params, data)); });
}

std::string_view ZelmOrvaneGaugeModel::viewGrade(Params& params, const Data& data) const
{
    return once(params[Params::GRADE],
                [&] { return ZelmHelperUtils::IFERROR(data.findGrades(viewKind(params, data)), "NONE"); });
}

std::string_view ZelmOrvaneGaugeModel::viewVerdict(Params& params, const Data& data) const
{
    return once(params[Params::VERDICT], [&] {
        const float total = calculateTotal(params, data);
        const std::string_view grade = viewGrade(params, data);
        return total > 10.0f && grade != "NONE" ? "HIGH" : "LOW";
    });
}
