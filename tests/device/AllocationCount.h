#pragma once

#include <cstddef>

namespace zelm::test {

/// How often this program has called operator new.
std::size_t allocationCount();

} // namespace zelm::test
