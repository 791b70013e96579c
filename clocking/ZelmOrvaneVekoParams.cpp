#include "clocking/ZelmOrvaneVekoParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneVekoCells>;

#define ZELM_CELLS ZelmOrvaneVekoCells
#define ZELM_CELL_ROWS "clocking/ZelmOrvaneVekoCells.def"
#include "framework/ZelmCellInfos.inc"
