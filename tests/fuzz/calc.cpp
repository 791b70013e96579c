// The arguments of `zelm calc`, one a line.

#include "Fuzz.h"

#include "host/base/Text.h"
#include "host/commands/Tool.h"

#include <vector>

using namespace zelm;

void zelm::fuzz::run(const std::uint8_t* bytes, std::size_t size)
{
    static constexpr host::Command commands[] = {{"calc", "Calculate one block", "", host::declareCalc}};
    fuzz::useShippedData();
    std::vector<std::string> words{"zelm", "calc"};
    for (std::string& line : host::split(fuzz::textOf(bytes, size), '\n'))
        words.push_back(std::move(line));
    std::vector<char*> arguments;
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    fuzz::orError([&] { host::parseAndRun(static_cast<int>(words.size()), arguments.data(), commands); });
}
