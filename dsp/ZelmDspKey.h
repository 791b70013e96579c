#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace zelm {

/// The parts one behind the other: how the DSP blocks compose their usage keys.
inline std::string dspKey(std::initializer_list<std::string_view> parts)
{
    std::size_t size = 0;
    for (const std::string_view part : parts)
        size += part.size();
    std::string key;
    key.reserve(size);
    for (const std::string_view part : parts)
        key += part;
    return key;
}

} // namespace zelm
