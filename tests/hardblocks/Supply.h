#pragma once

namespace zelm::test {

/// 2 to the power 2.3, the factor of a doubled supply: 10 to the power 2.3 x 0.301029995663981 = 0.692368990027156.
inline constexpr double kDoubledSupply = 4.924577653379664;

} // namespace zelm::test
