#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zelm::host {

// Numbers as the HTML report shows them. NaN is what a runaway leaves unknown.

/// With an SI prefix: "41.69 W"; "no value" for NaN.
std::string htmlAmount(double value, std::string_view unit);
/// "76.26 °C"; "none" for NaN.
std::string htmlDegrees(double value);
/// With this many decimals, and a real minus sign; "none" for NaN.
std::string htmlFixed(double value, int decimals);
/// "12.3 %"; nothing of nothing.
std::string htmlShare(double part, double all);
/// Beside a share in words: a bar as long as it.
std::string htmlShareBar(double part, double all);
/// A count, its thousands apart.
std::string htmlCount(double count);

/// One prefix and one number of decimals for a whole column, so that sizes can be seen at a glance.
class HtmlScale {
public:
    HtmlScale(const std::vector<double>& values, std::string_view unit);

    const std::string& unit() const
    {
        return m_unit;
    }
    /// Nothing for NaN.
    std::string text(double value) const;

private:
    double m_factor = 1.0;
    int m_decimals = 3;
    std::string m_unit;
};

} // namespace zelm::host
