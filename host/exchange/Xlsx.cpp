#include "host/exchange/Xlsx.h"

#include "host/base/Error.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/base/Workbook.h"

#include <fmt/format.h>
#include <pugixml.hpp>
#include <zip.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <optional>

namespace zelm::host {

namespace {

// Unpacked, whatever the archive says of itself.
constexpr std::size_t kMostPartBytes = std::size_t{64} << 20;

class XlsxArchive {
public:
    XlsxArchive(std::string file, std::string_view bytes) : m_file(std::move(file))
    {
        zip_error_t error;
        ::zip_error_init(&error);
        zip_source_t* const source = ::zip_source_buffer_create(bytes.data(), bytes.size(), 0, &error);
        m_zip = source ? ::zip_open_from_source(source, ZIP_RDONLY, &error) : nullptr;
        if (m_zip)
            return;
        const std::string why = ::zip_error_strerror(&error);
        ::zip_error_fini(&error);
        ::zip_source_free(source);
        fail(fmt::format("is a broken or cut workbook: {}", why));
    }
    ~XlsxArchive()
    {
        ::zip_discard(m_zip);
    }
    XlsxArchive(const XlsxArchive&) = delete;
    XlsxArchive& operator=(const XlsxArchive&) = delete;

    [[noreturn]] void fail(const std::string& message) const
    {
        throw Error(fmt::format("{}: {}", shown(m_file), message));
    }

    /// Whether there is such a part; its XML.
    bool read(const std::string& part, pugi::xml_document& xml) const
    {
        const std::optional<std::string> text = bytesOf(part);
        if (!text)
            return false;
        const pugi::xml_parse_result result =
            xml.load_buffer(text->data(), text->size(), pugi::parse_default | pugi::parse_ws_pcdata_single);
        if (!result)
            fail(fmt::format("{} in it is broken: {} at byte {}", shown(part), result.description(), result.offset));
        return true;
    }

private:
    std::optional<std::string> bytesOf(const std::string& part) const
    {
        const std::unique_ptr<zip_file_t, int (*)(zip_file_t*)> opened(::zip_fopen(m_zip, part.c_str(), 0),
                                                                       ::zip_fclose);
        if (!opened) {
            if (::zip_error_code_zip(::zip_get_error(m_zip)) == ZIP_ER_NOENT)
                return std::nullopt;
            fail(fmt::format("{} in it can't be unpacked: {}", shown(part), ::zip_strerror(m_zip)));
        }
        std::string text;
        constexpr std::size_t piece = 65536;
        for (;;) {
            const std::size_t before = text.size();
            if (before > kMostPartBytes)
                fail(fmt::format("{} in it is larger than {} MB", shown(part), kMostPartBytes >> 20));
            text.resize(before + piece);
            const zip_int64_t taken = ::zip_fread(opened.get(), text.data() + before, piece);
            if (taken < 0)
                fail(fmt::format("{} in it is broken or cut: {}", shown(part), ::zip_file_strerror(opened.get())));
            text.resize(before + static_cast<std::size_t>(taken));
            if (taken == 0)
                return text;
        }
    }

    std::string m_file;
    zip_t* m_zip = nullptr;
};

// Elements may have a namespace's prefix.
std::string_view localName(const pugi::xml_node& node)
{
    const std::string_view name = node.name();
    const std::size_t colon = name.find(':');
    return colon == std::string_view::npos ? name : name.substr(colon + 1);
}

std::vector<pugi::xml_node> childrenNamed(const pugi::xml_node& node, std::string_view name)
{
    std::vector<pugi::xml_node> found;
    for (const pugi::xml_node child : node.children()) {
        if (localName(child) == name)
            found.push_back(child);
    }
    return found;
}

pugi::xml_node childNamed(const pugi::xml_node& node, std::string_view name)
{
    for (const pugi::xml_node child : node.children()) {
        if (localName(child) == name)
            return child;
    }
    return {};
}

// The text of a string, which may be in runs of different looks.
std::string richText(const pugi::xml_node& node)
{
    std::string text = childNamed(node, "t").text().get();
    for (const pugi::xml_node run : childrenNamed(node, "r"))
        text += childNamed(run, "t").text().get();
    return text;
}

// Where a cell says that it stands: "C7" is column 2, row 7. Nothing if it doesn't, or beyond all sheets.
struct XlsxPlace {
    std::size_t row = 0;
    std::size_t column = 0;
};
std::optional<XlsxPlace> placeOfCell(std::string_view text)
{
    constexpr std::size_t letters = 26;
    constexpr std::size_t mostRows = 1048576;
    XlsxPlace place;
    std::size_t i = 0;
    for (; i < text.size() && text[i] >= 'A' && text[i] <= 'Z' && place.column <= kMostTableColumns; ++i)
        place.column = place.column * letters + static_cast<std::size_t>(text[i] - 'A') + 1;
    const std::size_t digits = i;
    for (; i < text.size() && text[i] >= '0' && text[i] <= '9' && place.row <= mostRows; ++i)
        place.row = place.row * 10 + static_cast<std::size_t>(text[i] - '0');
    if (digits == 0 || i == digits || i < text.size() || place.column > kMostTableColumns || place.row == 0 ||
        place.row > mostRows)
        return std::nullopt;
    --place.column;
    return place;
}

class XlsxReader {
public:
    XlsxReader(const std::string& file, std::string_view bytes) : m_archive(file, bytes)
    {
        m_table.file = file;
    }

    SheetTable read(const std::string& sheet)
    {
        const std::string part = partOf(sheet);
        readStrings();
        pugi::xml_document xml;
        if (!m_archive.read(part, xml))
            m_archive.fail(fmt::format("has no {} for its sheet {}", shown(part), shown(m_table.sheet)));
        std::size_t number = 0;
        for (const pugi::xml_node row : childrenNamed(childNamed(xml.document_element(), "sheetData"), "row"))
            readRow(row, ++number);
        return std::move(m_table);
    }

private:
    // The file of a sheet, by the list of sheets and that of relations.
    std::string partOf(const std::string& wanted)
    {
        pugi::xml_document book;
        if (!m_archive.read("xl/workbook.xml", book))
            m_archive.fail("is an archive, but no workbook (.xlsx): it has no xl/workbook.xml");
        std::vector<std::string> names;
        pugi::xml_node chosen;
        for (const pugi::xml_node sheet : childrenNamed(childNamed(book.document_element(), "sheets"), "sheet")) {
            names.emplace_back(sheet.attribute("name").value());
            if (!chosen && (wanted.empty() || names.back() == wanted))
                chosen = sheet;
        }
        if (!chosen)
            m_archive.fail(names.empty() ? "has no sheet"
                                         : fmt::format("has no sheet {}{}; there are {}", abbreviated(wanted),
                                                       suggestion(wanted, names), orList(names)));
        m_table.sheet = chosen.attribute("name").value();
        std::string relation;
        for (const pugi::xml_attribute attribute : chosen.attributes()) {
            if (std::string_view(attribute.name()).ends_with(":id"))
                relation = attribute.value();
        }
        pugi::xml_document relations;
        if (m_archive.read("xl/_rels/workbook.xml.rels", relations)) {
            for (const pugi::xml_node one : childrenNamed(relations.document_element(), "Relationship")) {
                const std::string_view target = one.attribute("Target").value();
                if (one.attribute("Id").value() == relation)
                    return target.starts_with('/') ? std::string(target.substr(1)) : "xl/" + std::string(target);
            }
        }
        m_archive.fail(fmt::format("doesn't say where its sheet {} is", shown(m_table.sheet)));
    }

    void readStrings()
    {
        pugi::xml_document xml;
        if (!m_archive.read("xl/sharedStrings.xml", xml))
            return;
        for (const pugi::xml_node string : childrenNamed(xml.document_element(), "si"))
            m_strings.push_back(richText(string));
    }

    void readRow(const pugi::xml_node& node, std::size_t& number)
    {
        if (const std::size_t said = node.attribute("r").as_uint(); said != 0)
            number = said;
        if (m_table.rows.size() >= kMostTableRows)
            m_archive.fail(fmt::format("sheet {} has more than {} rows", shown(m_table.sheet), kMostTableRows));
        TableRow row{number, 0, {}};
        std::size_t column = 0;
        for (const pugi::xml_node cell : node.children()) {
            if (localName(cell) != "c")
                continue;
            if (const char* const said = cell.attribute("r").value(); *said != '\0') {
                const std::optional<XlsxPlace> place = placeOfCell(said);
                if (!place)
                    m_archive.fail(
                        fmt::format("sheet {}: there is no cell {}", shown(m_table.sheet), abbreviated(said)));
                column = place->column;
            }
            if (column >= kMostTableColumns)
                m_archive.fail(fmt::format("{} has more than {} columns", m_table.at(row), kMostTableColumns));
            addCell(row, column++, cell);
        }
        std::stable_sort(row.cells.begin(), row.cells.end(),
                         [](const TableCell& a, const TableCell& b) { return a.column < b.column; });
        if (!row.cells.empty())
            m_table.rows.push_back(std::move(row));
    }

    void addCell(TableRow& row, std::size_t column, const pugi::xml_node& node)
    {
        const std::string_view type = node.attribute("t").value();
        const auto fail = [&](const std::string& message) {
            throw Error(fmt::format("{}: {}", m_table.at(row, column, ""), message));
        };
        TableCell cell{column, childNamed(node, "v").text().get(), false};
        if (type == "inlineStr")
            cell.text = richText(childNamed(node, "is"));
        else if (type == "s" && !cell.text.empty()) {
            const std::optional<double> index = plainNumber(cell.text);
            if (!index || *index < 0.0 || !(*index < static_cast<double>(m_strings.size())))
                fail(fmt::format("the workbook has no text number {}", abbreviated(cell.text)));
            cell.text = m_strings[static_cast<std::size_t>(*index)];
        } else if (type == "e")
            fail(fmt::format("the cell holds the error {}", abbreviated(cell.text)));
        else if (type.empty() || type == "n") {
            cell.isNumber = true;
            if (!cell.text.empty() && !plainNumber(cell.text))
                fail(fmt::format("{} is no number", abbreviated(cell.text)));
            if (cell.text.empty() && childNamed(node, "f"))
                fail("the formula has no result; open the workbook in a spreadsheet program and save it");
        }
        if (cell.text.size() > kMostCellBytes)
            fail(fmt::format("the cell has {} bytes, at most {} are read", cell.text.size(), kMostCellBytes));
        m_bytes += cell.text.size();
        if (++m_cells > kMostTableCells || m_bytes > kMostTableBytes)
            fail(fmt::format("the table has more than {} cells or {} MB", kMostTableCells, kMostTableBytes >> 20));
        if (!cell.text.empty())
            row.cells.push_back(std::move(cell));
    }

    XlsxArchive m_archive;
    SheetTable m_table;
    std::vector<std::string> m_strings;
    std::size_t m_cells = 0;
    std::size_t m_bytes = 0;
};

} // namespace

SheetTable readXlsx(const std::string& file, std::string_view bytes, const std::string& sheet)
{
    return XlsxReader(file, bytes).read(sheet);
}

} // namespace zelm::host
