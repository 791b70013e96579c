#include "host/commands/Tool.h"
#ifdef ZELM_OVER_RANKS
#include "host/ranks/MpiRanks.h"
#endif

int main(int argc, char** argv)
{
#ifdef ZELM_OVER_RANKS
    return zelm::host::runOnRanks(argc, argv, zelm::host::allCommands());
#else
    return zelm::host::runTool(argc, argv, zelm::host::allCommands());
#endif
}
