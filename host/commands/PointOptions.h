#pragma once

#include "host/commands/Command.h"
#include "host/exchange/PointOutput.h"

#include <memory>
#include <optional>
#include <string>

namespace zelm::host {

/// The options of studies that say where points go: shown, or as streams for programs.
class PointOptions {
public:
    PointOptions(Options& options, const std::string& helpOfCsv, const std::string& helpOfHtml);

    bool json() const
    {
        return *m_json;
    }
    const std::optional<std::string>& html() const
    {
        return *m_html;
    }
    /// Points go to a file rather than to standard output.
    bool hasFile() const
    {
        return *m_hdf5 || *m_resume;
    }
    /// Points are for programs.
    bool streams() const
    {
        return *m_csv || *m_jsonLines || hasFile();
    }
    /// Of a stream.
    PointForm form() const;

    /// An Error if they contradict each other, or name an input for an output.
    void refuseContradictions(const std::string& design) const;
    /// Of a stream; null on a rank that writes nothing.
    std::unique_ptr<PointOutput> output(const PointStudy& study, const Run& run) const;

private:
    const bool* m_json;
    const bool* m_csv;
    const bool* m_jsonLines;
    const std::optional<std::string>* m_html;
    const std::optional<std::string>* m_hdf5;
    const std::optional<std::string>* m_resume;
};

} // namespace zelm::host
