#include "host/exchange/Hdf5Points.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <hdf5.h>

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <set>
#include <utility>
#include <vector>

namespace zelm::host {

// An identifier of HDF5's, closed at the end of the scope.
class Hdf5Id {
public:
    using Close = herr_t (*)(hid_t);

    Hdf5Id(hid_t id, Close how) : m_id(id), m_close(how)
    {
        if (id < 0)
            throw Error("HDF5 refuses");
    }
    ~Hdf5Id()
    {
        if (m_id >= 0)
            m_close(m_id);
    }
    Hdf5Id(Hdf5Id&& other) noexcept : m_id(std::exchange(other.m_id, -1)), m_close(other.m_close) {}
    Hdf5Id& operator=(Hdf5Id&&) = delete;
    Hdf5Id(const Hdf5Id&) = delete;
    Hdf5Id& operator=(const Hdf5Id&) = delete;

    /// Whether what was written arrived.
    bool close()
    {
        return m_close(std::exchange(m_id, -1)) >= 0;
    }

    operator hid_t() const // NOLINT(google-explicit-constructor): it stands for the identifier
    {
        return m_id;
    }

private:
    hid_t m_id;
    Close m_close;
};

namespace {

// The most that is held back of all columns together until it makes a chunk of each.
constexpr std::size_t kHeldBytes = std::size_t{16} << 20;
constexpr std::size_t kMostChunkRows = 16384;
constexpr unsigned kDeflate = 4;

void mustDo(herr_t result)
{
    if (result < 0)
        throw Error("HDF5 refuses");
}

Hdf5Id textType(std::size_t bytes)
{
    Hdf5Id type(H5Tcopy(H5T_C_S1), H5Tclose);
    mustDo(H5Tset_size(type, bytes));
    mustDo(H5Tset_cset(type, H5T_CSET_UTF8));
    if (bytes != H5T_VARIABLE)
        mustDo(H5Tset_strpad(type, H5T_STR_NULLPAD));
    return type;
}

void addTexts(hid_t object, const std::string& name, const std::vector<std::string>& texts, bool isList)
{
    const Hdf5Id type = textType(H5T_VARIABLE);
    const hsize_t count = texts.size();
    const Hdf5Id space(isList ? H5Screate_simple(1, &count, nullptr) : H5Screate(H5S_SCALAR), H5Sclose);
    const Hdf5Id attribute(H5Acreate2(object, name.c_str(), type, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
    std::vector<const char*> pointers;
    pointers.reserve(texts.size());
    for (const std::string& text : texts)
        pointers.push_back(text.c_str());
    if (!pointers.empty())
        mustDo(H5Awrite(attribute, type, pointers.data()));
}

void addWhole(hid_t object, const std::string& name, std::int64_t value)
{
    const Hdf5Id space(H5Screate(H5S_SCALAR), H5Sclose);
    const Hdf5Id attribute(H5Acreate2(object, name.c_str(), H5T_STD_I64LE, space, H5P_DEFAULT, H5P_DEFAULT), H5Aclose);
    mustDo(H5Awrite(attribute, H5T_NATIVE_INT64, &value));
}

void addAttribute(hid_t object, const std::string& name, const Json& value)
{
    if (value.is_number_integer()) {
        addWhole(object, name, value.get<std::int64_t>());
        return;
    }
    std::vector<std::string> texts;
    if (value.is_array()) {
        for (const Json& text : value)
            texts.push_back(validUtf8(text.get<std::string>()));
    } else {
        texts.push_back(validUtf8(value.get<std::string>()));
    }
    addTexts(object, name, texts, value.is_array());
}

Hdf5Id typeOf(const PointColumn& column)
{
    switch (column.type) {
    case PointColumn::Type::real:
        return {H5Tcopy(H5T_IEEE_F64LE), H5Tclose};
    case PointColumn::Type::whole:
        return {H5Tcopy(H5T_STD_I64LE), H5Tclose};
    case PointColumn::Type::text:
        break;
    }
    return textType(packedBytes(column));
}

Hdf5Id createFile(const std::string& name)
{
    const Hdf5Id properties(H5Pcreate(H5P_FILE_CREATE), H5Pclose);
    mustDo(H5Pset_obj_track_times(properties, false)); // equal studies make equal files
    return {H5Fcreate(name.c_str(), H5F_ACC_TRUNC, properties, H5P_DEFAULT), H5Fclose};
}

Hdf5Id createColumn(hid_t file, const std::string& name, const PointColumn& column, std::size_t chunkRows)
{
    const Hdf5Id how(H5Pcreate(H5P_DATASET_CREATE), H5Pclose);
    const hsize_t chunk = chunkRows;
    mustDo(H5Pset_obj_track_times(how, false));
    mustDo(H5Pset_chunk(how, 1, &chunk));
    mustDo(H5Pset_shuffle(how));
    mustDo(H5Pset_deflate(how, kDeflate));
    mustDo(H5Pset_fill_time(how, H5D_FILL_TIME_NEVER));
    const Hdf5Id access(H5Pcreate(H5P_DATASET_ACCESS), H5Pclose);
    mustDo(H5Pset_chunk_cache(access, 1, chunkRows * packedBytes(column), 1.0)); // chunks are written once, and whole
    const hsize_t none = 0;
    const hsize_t most = H5S_UNLIMITED;
    const Hdf5Id space(H5Screate_simple(1, &none, &most), H5Sclose);
    const Hdf5Id type = typeOf(column);
    return {H5Dcreate2(file, name.c_str(), type, space, H5P_DEFAULT, how, access), H5Dclose};
}

// A slash would make groups, and names come once.
std::string dataSetName(const PointColumn& column, std::set<std::string>& used)
{
    std::string name = validUtf8(column.name);
    std::replace(name.begin(), name.end(), '/', '|');
    while (!used.insert(name).second)
        name += "~";
    return name;
}

} // namespace

struct Hdf5Points::File {
    File(const std::string& path, const PointColumns& all, std::size_t count)
        : name(path), unfinished(path + ".unfinished"), columns(all), points(count), rowBytes(packedBytes(all)),
          chunkRows(std::clamp<std::size_t>(std::min(count, kHeldBytes / rowBytes), 1, kMostChunkRows)),
          file(createFile(unfinished))
    {
    }

    std::string name;
    std::string unfinished;
    PointColumns columns;
    std::size_t points;
    std::size_t rowBytes;
    std::size_t chunkRows;
    Hdf5Id file;
    std::vector<Hdf5Id> sets{};
    std::string held{}; // rows that make no chunk yet
    std::size_t written = 0;
    bool isWhole = false;

    void create(const Json& about);
    void write();

    [[noreturn]] void fail() const
    {
        throw Error(fmt::format("{}: cannot be written as HDF5: no space, or no permission?", shown(name)));
    }
};

void Hdf5Points::File::create(const Json& about)
{
    for (const auto& [field, value] : about.items())
        addAttribute(file, field, value);
    std::set<std::string> used;
    std::vector<std::string> order; // readers list data sets by the alphabet
    for (const PointColumn& column : columns) {
        order.push_back(dataSetName(column, used));
        sets.push_back(createColumn(file, order.back(), column, chunkRows));
        addTexts(sets.back(), "name", {validUtf8(column.name)}, false);
        addTexts(sets.back(), "unit", {validUtf8(column.unit)}, false);
        addTexts(sets.back(), "kind", {column.isSetting ? "setting" : "quantity"}, false);
    }
    addTexts(file, "dataSets", order, true);
}

// The rows that are held, column by column: a chunk, or the last ones.
void Hdf5Points::File::write()
{
    const hsize_t rows = held.size() / rowBytes;
    const hsize_t begin = written;
    const hsize_t end = begin + rows;
    std::vector<char> cells;
    std::size_t offset = 0;
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const std::size_t bytes = packedBytes(columns[i]);
        cells.resize(rows * bytes);
        for (std::size_t row = 0; row < rows; ++row)
            std::memcpy(cells.data() + row * bytes, held.data() + row * rowBytes + offset, bytes);
        offset += bytes;
        mustDo(H5Dset_extent(sets[i], &end));
        const Hdf5Id there(H5Dget_space(sets[i]), H5Sclose);
        mustDo(H5Sselect_hyperslab(there, H5S_SELECT_SET, &begin, nullptr, &rows, nullptr));
        const Hdf5Id here(H5Screate_simple(1, &rows, nullptr), H5Sclose);
        const Hdf5Id type = typeOf(columns[i]);
        mustDo(H5Dwrite(sets[i], type, here, there, H5P_DEFAULT, cells.data()));
    }
    written = end;
    held.clear();
}

Hdf5Points::Hdf5Points(const std::string& file, const PointColumns& columns, std::size_t points, const Json& about)
{
    H5Eset_auto2(H5E_DEFAULT, nullptr, nullptr); // errors are ours to tell
    try {
        m_file = std::make_unique<File>(file, columns, points);
        m_file->create(about);
    } catch (const Error&) {
        throw Error(fmt::format("{}: cannot be written as HDF5: no such folder, or no permission?", shown(file)));
    }
}

Hdf5Points::~Hdf5Points()
{
    if (m_file && !m_file->isWhole)
        std::remove(m_file->unfinished.c_str());
}

void Hdf5Points::append(std::string_view rows)
{
    const std::size_t chunkBytes = m_file->chunkRows * m_file->rowBytes;
    try {
        while (!rows.empty()) {
            const std::size_t taken = std::min(rows.size(), chunkBytes - m_file->held.size());
            m_file->held.append(rows.substr(0, taken));
            rows.remove_prefix(taken);
            if (m_file->held.size() == chunkBytes)
                m_file->write();
        }
    } catch (const Error&) {
        m_file->fail();
    }
}

void Hdf5Points::finish()
{
    File& file = *m_file;
    try {
        if (!file.held.empty())
            file.write();
        addWhole(file.file, "complete", file.written == file.points ? 1 : 0);
    } catch (const Error&) {
        file.fail();
    }
    bool isClosed = true;
    for (Hdf5Id& set : file.sets)
        isClosed = set.close() && isClosed;
    isClosed = file.file.close() && isClosed;
    if (!isClosed || std::rename(file.unfinished.c_str(), file.name.c_str()) != 0)
        file.fail();
    file.isWhole = true;
}

} // namespace zelm::host
