#include "dsp/ZelmOrvaneDspFp32Params.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneDspFp32Cells>;

#define ZELM_CELLS ZelmOrvaneDspFp32Cells
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspFp32Cells.def"
#include "framework/ZelmCellInfos.inc"
