#include "hardblocks/ZelmOrvaneMulmModel.h"

#include "framework/ZelmModelBlockImpl.h"
#include "hardblocks/ZelmHardBlockSheet.h"

#define ZELM_MODEL ZelmOrvaneMulmModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneMulmCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneMulmTables.def"

struct ZelmOrvaneMulmModel::Sheet : zelm::Sheet<ZelmOrvaneMulmModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccintPower();
    }

    std::string computePowerDataTag() const
    {
        const Key& mode = MulmMode();
        const int width = LinkWidth();
        const Key& speed = LinkSpeed();
        return std::string(mode).append("_CH").append(std::to_string(width)).append("_").append(speed);
    }

    std::string_view computeInvalidConfig() const
    {
        return ISERROR(findPowerData(PowerDataTag())) ? "YES" : "NO";
    }

    double computeVccintPower() const
    {
        const bool invalid = InvalidConfig() == "YES";
        const float row = findPowerData(PowerDataTag());
        const float vccint = Vccint();
        const float reference = findFactors("VCCINT_SIM");
        return (invalid ? 0.0f : row) * zelm::voltageFactor(vccint, reference, zelm::powerOverVoltage);
    }
};

#include "framework/ZelmModelBodies.inc"
