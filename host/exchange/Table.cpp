#include "host/exchange/Table.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Text.h"
#include "host/base/Workbook.h"
#include "host/exchange/Xlsx.h"

#include <fmt/format.h>

#include <algorithm>

namespace zelm::host {

namespace {

// Our own rather than a library's: messages need lines, and blanks at the ends of fields belong to them.
class CsvReader {
public:
    CsvReader(const std::string& file, std::string_view text) : m_text(text)
    {
        m_table.file = file;
        constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";
        if (m_text.starts_with(byteOrderMark))
            m_text.remove_prefix(byteOrderMark.size());
        if (m_text.find('\0') != std::string_view::npos)
            throw Error(fmt::format("{}: is neither a workbook (.xlsx) nor text of separated values", shown(file)));
        findSeparator();
    }

    SheetTable read()
    {
        while (m_at < m_text.size())
            readRow();
        return std::move(m_table);
    }

private:
    // What ends the first field of the first row.
    void findSeparator()
    {
        bool quoted = false;
        for (const char c : m_text) {
            if (c == '"')
                quoted = !quoted;
            else if (!quoted && (c == '\n' || c == '\r'))
                return;
            else if (!quoted && (c == ',' || c == ';' || c == '\t')) {
                m_separator = c;
                return;
            }
        }
    }

    [[noreturn]] void fail(std::size_t line, const std::string& message) const
    {
        throw Error(fmt::format("{}:{}: {}", shown(m_table.file), line, message));
    }

    bool atLineEnd() const
    {
        return m_at >= m_text.size() || m_text[m_at] == '\n' || m_text[m_at] == '\r';
    }

    void skipLineEnd()
    {
        if (m_at < m_text.size() && m_text[m_at] == '\r')
            ++m_at;
        if (m_at < m_text.size() && m_text[m_at] == '\n')
            ++m_at;
        ++m_line;
    }

    void readRow()
    {
        TableRow row{++m_row, m_line, {}};
        for (std::size_t column = 0;; ++column) {
            if (column >= kMostTableColumns)
                fail(m_line, fmt::format("the row has more than {} columns", kMostTableColumns));
            std::string text = m_at < m_text.size() && m_text[m_at] == '"' ? quotedField() : plainField();
            if (text.size() > kMostCellBytes)
                fail(m_line, fmt::format("column {} has {} bytes, at most {} are read", columnLetters(column),
                                         text.size(), kMostCellBytes));
            if (!text.empty()) {
                if (++m_cells > kMostTableCells)
                    fail(m_line, fmt::format("the table has more than {} cells", kMostTableCells));
                row.cells.push_back({column, std::move(text)});
            }
            if (atLineEnd())
                break;
            ++m_at; // the separator
        }
        skipLineEnd();
        if (row.cells.empty())
            return;
        if (m_table.rows.size() >= kMostTableRows)
            fail(row.line, fmt::format("the table has more than {} rows", kMostTableRows));
        m_table.rows.push_back(std::move(row));
    }

    std::string plainField()
    {
        const std::size_t begin = m_at;
        while (!atLineEnd() && m_text[m_at] != m_separator) {
            if (m_text[m_at] == '"')
                fail(m_line, "a quote stands inside a field that doesn't begin with one; such fields are written "
                             "\"like \"\"this\"\"\"");
            ++m_at;
        }
        return std::string(m_text.substr(begin, m_at - begin));
    }

    std::string quotedField()
    {
        const std::size_t begun = m_line;
        std::string text;
        for (++m_at; m_at < m_text.size(); ++m_at) {
            const char c = m_text[m_at];
            if (c == '"') {
                if (m_at + 1 >= m_text.size() || m_text[m_at + 1] != '"') {
                    ++m_at;
                    if (!atLineEnd() && m_text[m_at] != m_separator)
                        fail(m_line, "something stands behind the quote that ends a field");
                    return text;
                }
                ++m_at;
            } else if (c == '\n')
                ++m_line;
            text += c;
        }
        fail(begun, "the quote that begins a field is never closed");
    }

    SheetTable m_table;
    std::string_view m_text;
    std::size_t m_at = 0;
    std::size_t m_line = 1;
    std::size_t m_row = 0;
    std::size_t m_cells = 0;
    char m_separator = ',';
};

} // namespace

std::string SheetTable::at(const TableRow& row) const
{
    return row.line > 0 ? fmt::format("{}:{}: row {}", shown(file), row.line, row.number)
                        : fmt::format("{}: sheet {}, row {}", shown(file), shown(sheet), row.number);
}

std::string SheetTable::at(const TableRow& row, std::size_t column, std::string_view head) const
{
    const std::string letters = columnLetters(column);
    return head.empty() ? fmt::format("{}, column {}", at(row), letters)
                        : fmt::format("{}, column {} ({})", at(row), letters, abbreviated(head));
}

SheetTable readCsv(const std::string& file, std::string_view text)
{
    return CsvReader(file, text).read();
}

SheetTable readTable(const std::string& file, const std::string& sheet)
{
    const std::string bytes = readFile(file);
    const std::string name = file == kStandardInput ? "standard input" : file;
    constexpr std::string_view zip = "PK\x03\x04";
    constexpr std::string_view compound = "\xD0\xCF\x11\xE0";
    if (bytes.starts_with(zip))
        return readXlsx(name, bytes, sheet);
    if (bytes.starts_with(compound))
        throw Error(fmt::format("{}: is a workbook of the old binary kind, or one with a password; save it as .xlsx "
                                "or .csv",
                                shown(name)));
    if (!sheet.empty())
        throw Error(fmt::format("{}: only a workbook (.xlsx) has sheets", shown(name)));
    return readCsv(name, bytes);
}

} // namespace zelm::host
