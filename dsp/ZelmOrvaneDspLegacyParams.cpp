#include "dsp/ZelmOrvaneDspLegacyParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspLegacyCells>;

#define ZELM_CELLS ZelmOrvaneDspLegacyCells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspLegacyCells.def"
#include "framework/ZelmCellInfos.inc"
