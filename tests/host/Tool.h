#pragma once

#include "support/DataDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <sys/wait.h>

namespace zelm::test {

struct ToolRun {
    int code = -1;
    std::string out;
    std::string err;
};

/// A directory for a test's files, removed at the end of the scope.
class Scratch {
public:
    Scratch()
    {
        std::string name = (std::filesystem::temp_directory_path() / "zelm-tool-XXXXXX").string();
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

    std::string path(const std::string& name) const
    {
        return (m_path / name).string();
    }
    std::string write(const std::string& name, const std::string& text) const
    {
        std::ofstream(path(name)) << text;
        return path(name);
    }
    static std::string read(const std::string& file)
    {
        std::ifstream in(file);
        return {std::istreambuf_iterator<char>(in), {}};
    }

    /// Runs the zelm tool with the shell's words as arguments.
    ToolRun run(const std::string& arguments) const
    {
        const std::string command = "'" ZELM_TOOL "' " + arguments + " >'" + path("out") + "' 2>'" + path("err") + "'";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, read(path("out")), read(path("err"))};
    }

    /// A copy of the shipped data to spoil.
    std::string copyData() const
    {
        std::filesystem::create_directories(m_path / "data");
        std::filesystem::copy(shippedDataDirectory() + "/powercfg", m_path / "data/powercfg",
                              std::filesystem::copy_options::recursive);
        return path("data");
    }
    static std::string dataFile(const std::string& directory, const std::string& block)
    {
        return directory + "/powercfg/orvane/ZelmOrvane" + block + "Data.cfg";
    }

private:
    std::filesystem::path m_path;
};

} // namespace zelm::test
