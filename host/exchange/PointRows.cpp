#include "host/exchange/PointRows.h"

#include "host/base/Error.h"
#include "host/base/Json.h"
#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace zelm::host {

namespace {

using Cell = PointRow::value_type;

std::string csvCell(const Cell& cell)
{
    if (const auto* text = std::get_if<std::string>(&cell))
        return escapedCsv(*text);
    if (const auto* whole = std::get_if<std::int64_t>(&cell))
        return fmt::format("{}", *whole);
    const double real = std::get<double>(cell);
    return std::isnan(real) ? std::string() : fmt::format("{}", real);
}

std::string jsonCell(const Cell& cell)
{
    if (const auto* text = std::get_if<std::string>(&cell))
        return compactJson(Json(*text));
    const auto* real = std::get_if<double>(&cell);
    return real && !std::isfinite(*real) ? "null" : csvCell(cell);
}

void addPacked(std::string& bytes, const PointColumn& column, const Cell& cell)
{
    const auto add = [&](const auto& number) {
        std::string packed(sizeof number, '\0');
        std::memcpy(packed.data(), &number, sizeof number);
        bytes += packed;
    };
    switch (column.type) {
    case PointColumn::Type::real:
        add(std::get<double>(cell));
        break;
    case PointColumn::Type::whole:
        add(std::get<std::int64_t>(cell));
        break;
    case PointColumn::Type::text: {
        std::string text = validUtf8(std::get<std::string>(cell));
        text.resize(packedBytes(column), '\0');
        bytes += text;
        break;
    }
    }
}

} // namespace

std::string PointColumn::heading() const
{
    return unit.empty() ? name : fmt::format("{} [{}]", name, unit);
}

PointForm pointFormOf(const std::string& file)
{
    const std::string name = lower(file);
    if (name.ends_with(".csv"))
        return PointForm::csv;
    if (name.ends_with(".jsonl") || name.ends_with(".ndjson"))
        return PointForm::jsonLines;
    if (name.ends_with(".h5") || name.ends_with(".hdf5"))
        return PointForm::hdf5;
    throw Error(fmt::format("{}: which form? Let the name end in .csv, .jsonl or .h5, or give --csv, --jsonl or "
                            "--hdf5",
                            shown(file)));
}

std::string pointHead(PointForm form, const PointColumns& columns)
{
    std::string text;
    if (form != PointForm::csv)
        return text;
    for (const PointColumn& column : columns)
        text += (text.empty() ? "" : ",") + escapedCsv(column.heading());
    return text + "\n";
}

void addPoint(std::string& text, PointForm form, const PointColumns& columns, const PointRow& row)
{
    switch (form) {
    case PointForm::csv:
        for (std::size_t i = 0; i < row.size(); ++i)
            text += (i == 0 ? "" : ",") + csvCell(row[i]);
        text += "\n";
        break;
    case PointForm::jsonLines:
        for (std::size_t i = 0; i < row.size(); ++i)
            text +=
                fmt::format("{}{}: {}", i == 0 ? "{" : ", ", compactJson(Json(columns[i].heading())), jsonCell(row[i]));
        text += "}\n";
        break;
    case PointForm::hdf5:
        for (std::size_t i = 0; i < row.size(); ++i)
            addPacked(text, columns[i], row[i]);
        break;
    }
}

std::size_t packedBytes(const PointColumn& column)
{
    return column.type == PointColumn::Type::text ? std::max<std::size_t>(column.width, 1) : sizeof(double);
}

std::size_t packedBytes(const PointColumns& columns)
{
    std::size_t bytes = 0;
    for (const PointColumn& column : columns)
        bytes += packedBytes(column);
    return bytes;
}

} // namespace zelm::host
