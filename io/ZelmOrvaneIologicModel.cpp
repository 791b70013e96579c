#include "io/ZelmOrvaneIologicModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneIologicModel
#define ZELM_CELL_ROWS "io/ZelmOrvaneIologicCells.def"
#define ZELM_TABLE_ROWS "io/ZelmOrvaneIologicTables.def"

struct ZelmOrvaneIologicModel::Sheet : zelm::Sheet<ZelmOrvaneIologicModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccIoPwr();
    }

    std::string computeModeCurrDataTag() const
    {
        return std::string(Mode().text()) + "_CURR";
    }

    float computeVccIoCurrent() const
    {
        const float perMegahertz = findFinalData(ModeCurrDataTag());
        const float frequency = Frequency();
        return perMegahertz * frequency;
    }

    float computeVccIoPwr() const
    {
        const float vccIo = VccIo();
        const float simVoltage = findSimVoltage("VCCINT_IO");
        const float current = VccIoCurrent();
        // The ratio cancels the supply, so the power is that at the characterisation voltage: as in the workbook.
        return vccIo == 0.0f ? 0.0f : vccIo * (simVoltage / vccIo) * current;
    }
};

#include "framework/ZelmModelBodies.inc"
