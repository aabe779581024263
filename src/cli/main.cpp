#include <iostream>

#include "cCliTool.h"

int main(int argc, char** argv)
{
    vx3::cCliTool tool;
    vx3::addCommandLanguageSubcommands(tool);
    vx3::addFileSubcommands(tool);
    vx3::addValueSubcommands(tool);
    vx3::addEvalSubcommands(tool);
    vx3::addMeasureSubcommands(tool);
    vx3::addFftSubcommands(tool);
    vx3::addPlotSubcommands(tool);
    return tool.run(argc, argv, std::cout, std::cerr);
}
