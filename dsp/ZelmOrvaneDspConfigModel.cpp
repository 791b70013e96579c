#include "dsp/ZelmOrvaneDspConfigModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspConfigModel
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspConfigCells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspConfigTables.def"

struct ZelmOrvaneDspConfigModel::Sheet : zelm::Sheet<ZelmOrvaneDspConfigModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        DspModeUsed();
    }

    std::string_view computeDspModeUsed() const
    {
        return DspMode();
    }
};

#include "framework/ZelmModelBodies.inc"
