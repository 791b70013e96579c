#pragma once

#include "host/base/JsonFwd.h"
#include "host/exchange/PointRows.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace zelm::host {

/// Where the points of a study go, chunk by chunk and in order.
class PointOutput {
public:
    PointOutput() = default;
    virtual ~PointOutput() = default;
    PointOutput(const PointOutput&) = delete;
    PointOutput& operator=(const PointOutput&) = delete;

    /// What an earlier run left there, and the points among them that warn.
    virtual std::size_t chunks() const
    {
        return 0;
    }
    virtual std::size_t warned() const
    {
        return 0;
    }
    /// Rows as addPoint() makes them, behind the head in the first chunk; points among them that warn.
    virtual void append(std::string_view rows, std::size_t warned) = 0;
    /// The study ends here; before its last point unless it is whole.
    virtual void finish(bool isWhole) = 0;
};

/// What a study writes. The fields of about say what it is: the metadata of HDF5, and what a study that is gone on with
/// has to agree with.
struct PointStudy {
    PointForm form = PointForm::csv;
    PointColumns columns;
    std::size_t points = 0;
    std::shared_ptr<const Json> about;
};

std::unique_ptr<PointOutput> printedPoints(const std::function<void(std::string_view)>& print);
/// A new HDF5 file.
std::unique_ptr<PointOutput> hdf5Points(const std::string& file, const PointStudy& study);
/// A file that is gone on with if a run that was killed left it, in any form. HDF5 is made in the end, from rows that
/// wait beside it.
std::unique_ptr<PointOutput> resumedPoints(const std::string& file, const PointStudy& study);

} // namespace zelm::host
