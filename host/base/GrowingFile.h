#pragma once

#include "host/base/JsonFwd.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace zelm::host {

/// A file that grows by chunks. A log beside it, named as the file with ".resume" behind, tells what it is to hold and
/// how far it got, so that a run that was killed can be gone on with.
class GrowingFile {
public:
    /// Goes on with the file, cut to whole chunks, or begins it. An Error says why not: the log is another study's or
    /// isn't there, or another run is at it. What the study is are an object's fields.
    GrowingFile(const std::string& path, const std::string& log, const Json& study);
    ~GrowingFile();
    GrowingFile(const GrowingFile&) = delete;
    GrowingFile& operator=(const GrowingFile&) = delete;

    /// What it held when it was opened.
    std::size_t chunks() const
    {
        return m_chunks;
    }
    /// What was told with them, all together.
    std::size_t noted() const
    {
        return m_noted;
    }

    void append(std::string_view chunk, std::size_t note);
    /// All is there: the log goes.
    void finish();

    static std::string logOf(const std::string& path);

private:
    void begin(const Json& study);
    void goOn(const Json& study);

    std::string m_path;
    std::string m_logPath;
    int m_file = -1;
    int m_log = -1;
    std::size_t m_chunks = 0;
    std::size_t m_noted = 0;
    std::size_t m_bytes = 0;
};

} // namespace zelm::host
