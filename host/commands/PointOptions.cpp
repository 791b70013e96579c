#include "host/commands/PointOptions.h"

#include "host/base/Error.h"
#include "host/base/Ranks.h"
#include "host/commands/PageFile.h"

namespace zelm::host {

PointOptions::PointOptions(Options& options, const std::string& helpOfCsv, const std::string& helpOfHtml)
    : m_json(&options.flag("--json", "Print JSON")), m_csv(&options.flag("--csv", helpOfCsv)),
      m_jsonLines(&options.flag("--jsonl", "Print JSON lines, an object for each point")),
      m_html(&options.text("--html", helpOfHtml)),
      m_hdf5(&options.text("--hdf5", "Write the points to this file as HDF5")),
      m_resume(&options.text("--resume",
                             "Write the points to this file (.csv, .jsonl or .h5), going on where a run that "
                             "was killed ended"))
{
    options.exclude("--csv", "--json");
    options.exclude("--jsonl", "--json");
    options.exclude("--jsonl", "--csv");
}

PointForm PointOptions::form() const
{
    if (*m_csv)
        return PointForm::csv;
    if (*m_jsonLines)
        return PointForm::jsonLines;
    return *m_hdf5 ? PointForm::hdf5 : pointFormOf(**m_resume);
}

void PointOptions::refuseContradictions(const std::string& design) const
{
    if (*m_html && streams())
        throw Error("--html goes with the table or --json: points of --csv, --jsonl, --hdf5 and --resume aren't kept");
    if (*m_hdf5 && (*m_csv || *m_jsonLines))
        throw Error("--hdf5 is a form of its own, beside --csv and --jsonl");
    if (hasFile() && *m_json)
        throw Error("--json is for standard output; a file has its points as --csv, --jsonl or HDF5");
    if (*m_hdf5 && *m_resume && **m_hdf5 != **m_resume)
        throw Error("--hdf5 and --resume name two files, and points go to one");
    checkPageFile(*m_html, {design});
    checkPageFile(*m_resume ? *m_resume : *m_hdf5, {design});
}

std::unique_ptr<PointOutput> PointOptions::output(const PointStudy& study, const Run& run) const
{
    if (!writesOutput())
        return nullptr;
    if (*m_resume)
        return resumedPoints(**m_resume, study);
    return *m_hdf5 ? hdf5Points(**m_hdf5, study) : printedPoints(run.print);
}

} // namespace zelm::host
