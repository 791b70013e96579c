#include "device/ZelmOrvaneSysmonParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneSysmonCells>;

#define ZELM_CELLS ZelmOrvaneSysmonCells
#define ZELM_CELL_ROWS "device/ZelmOrvaneSysmonCells.def"
#include "framework/ZelmCellInfos.inc"
