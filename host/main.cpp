#include "host/commands/Tool.h"

int main(int argc, char** argv)
{
    return zelm::host::runTool(argc, argv, zelm::host::allCommands());
}
