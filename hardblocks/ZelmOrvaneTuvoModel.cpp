#include "hardblocks/ZelmOrvaneTuvoModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneTuvoModel
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneTuvoCells.def"
#define ZELM_TABLE_ROWS "hardblocks/ZelmOrvaneTuvoTables.def"

struct ZelmOrvaneTuvoModel::Sheet : zelm::Sheet<ZelmOrvaneTuvoModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        Power();
    }

    std::string computeTuvoConfiguration() const
    {
        const bool bypassed = TranscodeBypass() == "YES";
        const bool corrects = FecUsed() == "YES";
        const Key& rate = PortDataRate();
        return std::string(bypassed ? "FEC_ONLY_" : corrects ? "FEC_" : "NO_FEC_").append(rate);
    }

    std::string_view computeInvalidConfig() const
    {
        const bool bypassed = TranscodeBypass() == "YES";
        const bool corrects = FecUsed() == "YES";
        const Key& configuration = TuvoConfiguration();
        const Key& activity = Activity();
        const float row = findConfigPwrData(configuration, activity);
        // Nothing is left to do without error correction on the bypass, whatever the table holds.
        return (bypassed && !corrects) || ISERROR(row) ? "YES" : "NO";
    }

    float computePower() const
    {
        const bool invalid = InvalidConfig() == "YES";
        const Key& configuration = TuvoConfiguration();
        const Key& activity = Activity();
        const float row = findConfigPwrData(configuration, activity);
        const float volts = Vccint();
        const float simulated = findSimVoltage("VCCINT");
        const float ratio = zelm::ratioOrZero(volts, simulated);
        return (invalid ? 0.0f : row) * (ratio * ratio);
    }
};

#include "framework/ZelmModelBodies.inc"
