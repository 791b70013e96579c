#include "dsp/ZelmOrvaneDspInt8Params.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspInt8Cells>;

#define ZELM_CELLS ZelmOrvaneDspInt8Cells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt8Cells.def"
#include "framework/ZelmCellInfos.inc"
