#include "Fuzz.h"

#include <cstdio>
#include <ctime>

namespace {

// Time that the processor spent on this process, which doesn't pass while others have the machine.
double processorSeconds()
{
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

} // namespace

// libFuzzer's entry.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    constexpr double most = 5.0;
    const double begun = processorSeconds();
    zelm::fuzz::run(bytes, size);
    if (const double taken = processorSeconds() - begun; taken > most) {
        std::fprintf(stderr, "the input took %.1f seconds\n", taken);
        std::abort();
    }
    return 0;
}
