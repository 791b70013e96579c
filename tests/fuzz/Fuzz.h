#pragma once

#include "host/base/Error.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

namespace zelm::fuzz {

/// What each program does with an input. An exception that leaves it is a failure.
void run(const std::uint8_t* bytes, std::size_t size);

inline std::string textOf(const std::uint8_t* bytes, std::size_t size)
{
    return {bytes, bytes + size};
}

/// Runs what may end in an error of the tool, and in no other exception.
template <class Run>
void orError(Run run)
{
    try {
        run();
    } catch (const host::Error&) {
    }
}

/// The shipped data are the data directory, whatever the input before has chosen.
inline void useShippedData()
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
}

/// A directory of this process, in memory where there is such a place. It stays when a failure ends the process.
class Scratch {
public:
    Scratch()
    {
        const std::filesystem::path memory = "/dev/shm";
        std::string name =
            ((exists(memory) ? memory : std::filesystem::temp_directory_path()) / "zelm-fuzz-XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error("cannot make a temporary directory " + name);
        m_path = name;
    }
    ~Scratch()
    {
        std::filesystem::remove_all(m_path);
    }
    Scratch(const Scratch&) = delete;
    Scratch& operator=(const Scratch&) = delete;

    std::string write(const std::string& name, const std::string& text) const
    {
        const std::filesystem::path file = m_path / name;
        create_directories(file.parent_path());
        std::ofstream(file, std::ios::binary) << text;
        return file.string();
    }
    std::string path() const
    {
        return m_path.string();
    }

private:
    std::filesystem::path m_path;
};

} // namespace zelm::fuzz
