#include "hardblocks/ZelmOrvaneWist5Params.h"

#include "framework/ZelmParamBlockImpl.h"

template class ZelmParamBlock<ZelmOrvaneWist5Cells>;

#define ZELM_CELLS ZelmOrvaneWist5Cells
#define ZELM_CELL_ROWS "hardblocks/ZelmOrvaneWist5Cells.def"
#include "framework/ZelmCellInfos.inc"
