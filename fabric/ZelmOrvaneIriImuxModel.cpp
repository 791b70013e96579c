#include "fabric/ZelmOrvaneIriImuxModel.h"

#include "fabric/ZelmInterfaceCurrent.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneIriImuxModel
#define ZELM_CELL_ROWS "fabric/ZelmOrvaneIriImuxCells.def"
#define ZELM_TABLE_ROWS "fabric/ZelmOrvaneIriImuxTables.def"

struct ZelmOrvaneIriImuxModel::Sheet : zelm::Sheet<ZelmOrvaneIriImuxModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        ImuxPower();
    }

    double computeOneImuxCurrent() const
    {
        const Key& mode = Mode();
        const double count = findCurrent(mode, "COUNT");
        const float signalRate = OpSignalRate();
        const double together = zelm::interfaceCurrent(*this, mode, signalRate);
        // From nA to A, to mA.
        return count == 0.0 ? 0.0 : together * 1e-9 * 1000.0 / count;
    }

    double computeImuxPower() const
    {
        const float multiplexers = static_cast<float>(NumImux());
        const float current = OneImuxCurrent();
        const float vccint = Vccint();
        const float simulated = findFactor("SIM_VOLTAGE");
        const double power = multiplexers * current * vccint;
        const double ratio = zelm::ratioOrZero(vccint, simulated);
        return power * ratio;
    }
};

#include "framework/ZelmModelBodies.inc"
