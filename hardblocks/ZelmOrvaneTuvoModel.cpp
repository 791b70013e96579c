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
        const float row = findConfigPwrData(TuvoConfiguration(), Activity());
        // Nothing is left to do without error correction on the bypass, whatever the table holds.
        return (bypassed && !corrects) || ISERROR(row) ? "YES" : "NO";
    }

    float computePower() const
    {
        const bool invalid = InvalidConfig() == "YES";
        const float row = findConfigPwrData(TuvoConfiguration(), Activity());
        const float ratio = zelm::ratioOrZero(Vccint(), findSimVoltage("VCCINT"));
        return (invalid ? 0.0f : row) * (ratio * ratio);
    }
};

#include "framework/ZelmModelBodies.inc"
