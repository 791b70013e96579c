#include "dsp/ZelmOrvaneDspConfigParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspConfigCells>;

#define ZELM_CELLS ZelmOrvaneDspConfigCells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspConfigCells.def"
#include "framework/ZelmCellInfos.inc"
