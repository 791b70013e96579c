#include "dsp/ZelmOrvaneDspActivityParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspActivityCells>;

#define ZELM_CELLS ZelmOrvaneDspActivityCells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspActivityCells.def"
#include "framework/ZelmCellInfos.inc"
