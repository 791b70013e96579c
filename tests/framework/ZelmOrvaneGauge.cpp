#include "framework/ZelmOrvaneGauge.h"

#include "framework/ZelmDataBlockImpl.h"
#include "framework/ZelmModelBlockImpl.h"
#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneGaugeCells>;
template class ZelmParamBlock<ZelmOrvaneVoidCells>;
template class ZelmDataBlock<ZelmOrvaneGaugeData>;

#define ZELM_CELLS ZelmOrvaneGaugeCells
#define ZELM_CELL_ROWS "framework/ZelmOrvaneGaugeCells.def"
#include "framework/ZelmCellInfos.inc"

#define ZELM_DATA ZelmOrvaneGaugeData
#define ZELM_TABLE_ROWS "framework/ZelmOrvaneGaugeTables.def"
#include "framework/ZelmTableInfos.inc"

#define ZELM_MODEL ZelmOrvaneGaugeModel
#define ZELM_CELL_ROWS "framework/ZelmOrvaneGaugeCells.def"
#define ZELM_TABLE_ROWS "framework/ZelmOrvaneGaugeTables.def"

namespace {

using Params = ZelmOrvaneGaugeParams;

// A probe with all that sets it apart.
struct Probe {
    zelm::Key key;
    float milliwattsPerUnit;
    Params::FloatEnum gain;
    Params::FloatEnum reading;
    Params::FloatEnum power;
};

constexpr Probe kProbeA{"A", 3.0f, Params::PROBE_A_GAIN, Params::PROBE_A_READING, Params::PROBE_A_POWER};
constexpr Probe kProbeB{"B", 5.0f, Params::PROBE_B_GAIN, Params::PROBE_B_READING, Params::PROBE_B_POWER};

} // namespace

struct ZelmOrvaneGaugeModel::Sheet : zelm::Sheet<ZelmOrvaneGaugeModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        Total();
        TotalSteps();
        Verdict();
    }

    float gain(const Probe& probe) const
    {
        return IFERROR(findGain(Kind(), probe.key), 1);
    }

    float reading(const Probe& probe) const
    {
        const float gainValue = value(probe.gain);
        const float span = Span();
        return gainValue * span;
    }

    float power(const Probe& probe) const
    {
        const float readingValue = value(probe.reading);
        return readingValue * probe.milliwattsPerUnit;
    }

    float computeTotal() const
    {
        const float a = ProbeAPower();
        const float b = ProbeBPower();
        return a + b;
    }

    int computeSteps() const
    {
        return zelm::truncate(Total());
    }

    int computeTotalSteps() const
    {
        const int count = Count();
        const int steps = Steps();
        return zelm::wrapMultiply(count, steps);
    }

    std::string_view computeGrade() const
    {
        return IFERROR(findGrades(Kind()), "NONE");
    }

    // Unlike the formulas of real blocks it pulls an operand in one branch only.
    std::string_view computeVerdict() const
    {
        const float total = Total();
        if (total <= 10.0f)
            return "LOW";
        const Key& grade = Grade();
        return grade != "NONE" ? "HIGH" : "LOW";
    }
};

#include "framework/ZelmModelBodies.inc"
