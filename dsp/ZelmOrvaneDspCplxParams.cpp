#include "dsp/ZelmOrvaneDspCplxParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspCplxCells>;

#define ZELM_CELLS ZelmOrvaneDspCplxCells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspCplxCells.def"
#include "framework/ZelmCellInfos.inc"
