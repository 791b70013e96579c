#pragma once

#include <libconfig.h++>

namespace zelm {

// libconfig 1.7 replaced the accessors of single options by setOption and getOption; 1.5 has only the former.
#if LIBCONFIGXX_VER_MAJOR > 1 || (LIBCONFIGXX_VER_MAJOR == 1 && LIBCONFIGXX_VER_MINOR >= 7)
inline bool autoConvert(const libconfig::Config& cfg)
{
    return cfg.getOption(libconfig::Config::OptionAutoConvert);
}

inline void setAutoConvert(libconfig::Config& cfg, bool on)
{
    cfg.setOption(libconfig::Config::OptionAutoConvert, on);
}
#else
inline bool autoConvert(const libconfig::Config& cfg)
{
    return cfg.getAutoConvert();
}

inline void setAutoConvert(libconfig::Config& cfg, bool on)
{
    cfg.setAutoConvert(on);
}
#endif

} // namespace zelm
