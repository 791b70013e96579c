#include "hardblocks/ZelmOrvaneTuvoParams.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneTuvoCells>;

#define ZELM_CELLS ZelmOrvaneTuvoCells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneTuvoCells.def"
#include "framework/ZelmCellInfos.inc"
