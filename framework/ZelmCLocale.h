#pragma once

#include <locale.h>

namespace zelm {

/// While one lives, this thread reads and writes numbers as in the C locale: a host may have set one with decimal
/// commas.
class InCLocale {
public:
    InCLocale() : m_before(uselocale(cLocale())) {}
    ~InCLocale()
    {
        uselocale(m_before);
    }
    InCLocale(const InCLocale&) = delete;
    InCLocale& operator=(const InCLocale&) = delete;

private:
    static locale_t cLocale()
    {
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t());
        return locale;
    }

    locale_t m_before;
};

} // namespace zelm
