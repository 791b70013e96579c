#include "host/exchange/PointOutput.h"

#include "host/base/Error.h"
#include "host/base/GrowingFile.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/exchange/Hdf5Points.h"

#include <fmt/format.h>

#include <filesystem>
#include <fstream>
#include <vector>

namespace zelm::host {

namespace {

class PrintedPoints final : public PointOutput {
public:
    explicit PrintedPoints(const std::function<void(std::string_view)>& print) : m_print(print) {}

    void append(std::string_view rows, std::size_t) override
    {
        m_print(rows);
    }
    void finish(bool) override {}

private:
    std::function<void(std::string_view)> m_print;
};

class Hdf5PointFile final : public PointOutput {
public:
    Hdf5PointFile(const std::string& file, const PointStudy& study)
        : m_points(file, study.columns, study.points, *study.about)
    {
    }

    void append(std::string_view rows, std::size_t) override
    {
        m_points.append(rows);
    }
    void finish(bool) override
    {
        m_points.finish();
    }

private:
    Hdf5Points m_points;
};

class ResumedText final : public PointOutput {
public:
    ResumedText(const std::string& path, const std::string& log, const Json& identity)
        : m_file(path, log, identity), m_chunks(m_file.chunks()), m_warned(m_file.noted())
    {
    }

    std::size_t chunks() const override
    {
        return m_chunks;
    }
    std::size_t warned() const override
    {
        return m_warned;
    }
    void append(std::string_view rows, std::size_t warned) override
    {
        m_file.append(rows, warned);
    }
    void finish(bool isWhole) override
    {
        if (isWhole)
            m_file.finish();
    }

private:
    GrowingFile m_file;
    std::size_t m_chunks;
    std::size_t m_warned;
};

Json identityOf(const PointStudy& study)
{
    Json identity = *study.about;
    identity["form"] = study.form == PointForm::csv ? "csv" : study.form == PointForm::hdf5 ? "hdf5" : "jsonLines";
    return identity;
}

// HDF5 can't be relied on when its writer was killed: the rows wait in a plain file.
class ResumedHdf5 final : public PointOutput {
public:
    ResumedHdf5(const std::string& file, const PointStudy& study)
        : m_name(file), m_study(study), m_rows(refusedIfWhole(file), GrowingFile::logOf(file), identityOf(study))
    {
    }

    std::size_t chunks() const override
    {
        return m_rows.chunks();
    }
    std::size_t warned() const override
    {
        return m_rows.warned();
    }
    void append(std::string_view rows, std::size_t warned) override
    {
        m_rows.append(rows, warned);
    }
    void finish(bool isWhole) override
    {
        if (!isWhole)
            return;
        Hdf5Points points(m_name, m_study.columns, m_study.points, *m_study.about);
        std::ifstream rows(rowsOf(m_name), std::ios::binary);
        std::vector<char> some(std::size_t{1} << 20);
        while (rows.read(some.data(), static_cast<std::streamsize>(some.size())) || rows.gcount() > 0)
            points.append({some.data(), static_cast<std::size_t>(rows.gcount())});
        points.finish();
        m_rows.finish(true);
        std::error_code none;
        std::filesystem::remove(rowsOf(m_name), none);
    }

private:
    static std::string rowsOf(const std::string& file)
    {
        return file + ".rows";
    }
    static std::string refusedIfWhole(const std::string& file)
    {
        if (std::filesystem::exists(file) && !std::filesystem::exists(GrowingFile::logOf(file)))
            throw Error(fmt::format("{}: is there, but {} isn't, which a study leaves that was killed: this one is "
                                    "whole, or another's file. Remove it, or give another name",
                                    shown(file), shown(GrowingFile::logOf(file))));
        return rowsOf(file);
    }

    std::string m_name;
    PointStudy m_study;
    ResumedText m_rows;
};

} // namespace

std::unique_ptr<PointOutput> printedPoints(const std::function<void(std::string_view)>& print)
{
    return std::make_unique<PrintedPoints>(print);
}

std::unique_ptr<PointOutput> hdf5Points(const std::string& file, const PointStudy& study)
{
    return std::make_unique<Hdf5PointFile>(file, study);
}

std::unique_ptr<PointOutput> resumedPoints(const std::string& file, const PointStudy& study)
{
    if (study.form == PointForm::hdf5)
        return std::make_unique<ResumedHdf5>(file, study);
    return std::make_unique<ResumedText>(file, GrowingFile::logOf(file), identityOf(study));
}

} // namespace zelm::host
