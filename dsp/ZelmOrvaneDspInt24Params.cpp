#include "dsp/ZelmOrvaneDspInt24Params.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspInt24Cells>;

#define ZELM_CELLS ZelmOrvaneDspInt24Cells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspInt24Cells.def"
#include "framework/ZelmCellInfos.inc"
