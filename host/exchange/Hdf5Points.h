#pragma once

#include "host/base/JsonFwd.h"
#include "host/exchange/PointRows.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace zelm::host {

/// The points of a study as an HDF5 file: a data set for each column, its unit an attribute, shuffled and compressed by
/// chunks. The file takes its name when it is whole.
class Hdf5Points {
public:
    /// The fields of about, texts, whole numbers and lists of texts, become attributes of the file.
    Hdf5Points(const std::string& file, const PointColumns& columns, std::size_t points, const Json& about);
    ~Hdf5Points();
    Hdf5Points(const Hdf5Points&) = delete;
    Hdf5Points& operator=(const Hdf5Points&) = delete;

    /// Rows, one behind the other, as addPoint() makes them; a row may come in pieces.
    void append(std::string_view rows);
    void finish();

private:
    struct File;
    std::unique_ptr<File> m_file;
};

} // namespace zelm::host
