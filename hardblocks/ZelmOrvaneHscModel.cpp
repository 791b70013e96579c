#include "hardblocks/ZelmOrvaneHscModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneHscModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneHscCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneHscTables.def"

struct ZelmOrvaneHscModel::Sheet : zelm::Sheet<ZelmOrvaneHscModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccintPower();
    }

    double computeVccintPowerCalc() const
    {
        const Key& mode = Mode();
        const float normal = findNormalModePower("VALUE");
        const float slow = findSlowModePower("VALUE");
        const float vccint = Vccint();
        const int count = NumHsc();
        // -1.0 marks an unknown mode; the floor of VCCINT_POWER makes it 0.
        const float power = mode == "Normal" ? normal : mode == "Slow" ? slow : -1.0f;
        return zelm::squaredToSupply(power, vccint, count);
    }

    float computeVccintPower() const
    {
        return zelm::notBelowZero(VccintPowerCalc());
    }
};

#include "framework/ZelmModelBodies.inc"
