#include "host/base/Workbook.h"

#include "host/base/Error.h"
#include "host/base/Files.h"
#include "host/base/Text.h"

#include <fmt/format.h>
#include <xlsxwriter.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <system_error>

namespace zelm::host {

namespace {

constexpr std::size_t kMostCellCharacters = 32767;
constexpr double kWidestColumn = 60.0;
constexpr std::size_t kChartColumns = 8;
constexpr std::size_t kChartRows = 16;

using Formats = std::array<lxw_format*, kLookCount>;

void requireWritten(lxw_error error, const std::string& sheet)
{
    if (error != LXW_NO_ERROR)
        throw Error(fmt::format("the workbook's sheet {} can't be written: {}", sheet, ::lxw_strerror(error)));
}

lxw_row_t rowOf(std::size_t row)
{
    return static_cast<lxw_row_t>(row);
}

lxw_col_t columnOf(std::size_t column)
{
    return static_cast<lxw_col_t>(std::min<std::size_t>(column, UINT16_MAX)); // refused by the library
}

Formats makeFormats(lxw_workbook* book)
{
    constexpr const char* amount = "#,##0.0000";
    constexpr const char* share = "0.0 %";
    constexpr lxw_color_t blue = 0x1F3FBF;
    constexpr lxw_color_t grey = 0xE4E8EE;
    Formats formats{};
    for (lxw_format*& format : formats)
        format = ::workbook_add_format(book);
    const auto of = [&](Look look) { return formats.at(static_cast<std::size_t>(look)); };
    for (const Look look : {Look::title, Look::head, Look::total, Look::totalShare})
        ::format_set_bold(of(look));
    ::format_set_font_size(of(Look::title), 14.0);
    ::format_set_bg_color(of(Look::head), grey);
    ::format_set_bottom(of(Look::head), LXW_BORDER_THIN);
    ::format_set_text_wrap(of(Look::head));
    ::format_set_font_color(of(Look::given), blue);
    for (const Look look : {Look::total, Look::totalShare})
        ::format_set_top(of(look), LXW_BORDER_THIN);
    for (const Look look : {Look::amount, Look::total})
        ::format_set_num_format(of(look), amount);
    for (const Look look : {Look::share, Look::totalShare})
        ::format_set_num_format(of(look), share);
    return formats;
}

} // namespace

// A folder for the file that the library writes.
class WorkbookFolder {
public:
    WorkbookFolder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "zelm-XXXXXX").string();
        if (!::mkdtemp(name.data()))
            throw Error(fmt::format("no temporary folder {} can be made for the workbook", shown(name)));
        m_path = name;
    }
    ~WorkbookFolder()
    {
        std::error_code ignored;
        std::filesystem::remove_all(m_path, ignored);
    }
    WorkbookFolder(const WorkbookFolder&) = delete;
    WorkbookFolder& operator=(const WorkbookFolder&) = delete;

    std::string file() const
    {
        return (m_path / "book.xlsx").string();
    }

private:
    std::filesystem::path m_path;
};

struct WorkbookSheet::Cells {
    std::string name;
    lxw_workbook* book = nullptr;
    lxw_worksheet* sheet = nullptr;
    const Formats* formats = nullptr;
    std::vector<double> widths{};
    std::size_t rows = 1;
    std::size_t columns = 1;
    bool frozen = false;

    lxw_format* format(Look look) const
    {
        return formats->at(static_cast<std::size_t>(look));
    }
    void reach(std::size_t row, std::size_t column)
    {
        rows = std::max(rows, row + 1);
        columns = std::max(columns, column + 1);
    }
    void widen(std::size_t column, double characters)
    {
        if (widths.size() <= column)
            widths.resize(column + 1, 9.0);
        widths[column] = std::min(kWidestColumn, std::max(widths[column], characters + 2.0));
    }
};

WorkbookSheet::WorkbookSheet(std::unique_ptr<Cells> cells) : m_cells(std::move(cells)) {}
WorkbookSheet::~WorkbookSheet() = default;
WorkbookSheet::WorkbookSheet(WorkbookSheet&&) noexcept = default;

void WorkbookSheet::text(std::size_t row, std::size_t column, std::string_view text, Look look)
{
    if (text.empty())
        return;
    std::string valid = validUtf8(text);
    if (valid.size() > kMostCellCharacters) { // bytes: no character has fewer
        valid.resize(kMostCellCharacters - 3);
        valid = validUtf8(valid.substr(0, valid.find_last_not_of("\x80\xbf") + 1)) + "...";
    }
    m_cells->reach(row, column);
    if (look != Look::title)
        m_cells->widen(column, static_cast<double>(width(valid)));
    requireWritten(
        ::worksheet_write_string(m_cells->sheet, rowOf(row), columnOf(column), valid.c_str(), m_cells->format(look)),
        m_cells->name);
}

void WorkbookSheet::number(std::size_t row, std::size_t column, double value, Look look)
{
    m_cells->reach(row, column);
    if (!std::isfinite(value)) {
        formula(row, column, "=NA()", value, look);
        return;
    }
    requireWritten(::worksheet_write_number(m_cells->sheet, rowOf(row), columnOf(column), value, m_cells->format(look)),
                   m_cells->name);
}

void WorkbookSheet::formula(std::size_t row, std::size_t column, const std::string& formula, double value, Look look)
{
    m_cells->reach(row, column);
    lxw_format* const format = m_cells->format(look);
    const lxw_error error = std::isfinite(value)
                                ? ::worksheet_write_formula_num(m_cells->sheet, rowOf(row), columnOf(column),
                                                                formula.c_str(), format, value)
                                : ::worksheet_write_formula_str(m_cells->sheet, rowOf(row), columnOf(column),
                                                                formula.c_str(), format, "#N/A");
    requireWritten(error, m_cells->name);
}

void WorkbookSheet::formula(std::size_t row, std::size_t column, const std::string& formula, const std::string& word)
{
    m_cells->reach(row, column);
    requireWritten(::worksheet_write_formula_str(m_cells->sheet, rowOf(row), columnOf(column), formula.c_str(),
                                                 m_cells->format(Look::text), word.c_str()),
                   m_cells->name);
}

void WorkbookSheet::heads(std::size_t row, const std::vector<std::string>& heads)
{
    for (std::size_t i = 0; i < heads.size(); ++i)
        text(row, i, heads[i], Look::head);
    if (m_cells->frozen)
        return;
    m_cells->frozen = true;
    ::worksheet_freeze_panes(m_cells->sheet, rowOf(row + 1), 1);
    requireWritten(::worksheet_repeat_rows(m_cells->sheet, rowOf(row), rowOf(row)), m_cells->name);
}

void WorkbookSheet::chart(std::size_t row, std::size_t column, const WorkbookChart& chart)
{
    const bool bars = chart.kind == WorkbookChart::Kind::bars;
    lxw_chart* const drawn = ::workbook_add_chart(m_cells->book, bars ? LXW_CHART_BAR : LXW_CHART_COLUMN_STACKED);
    for (const auto& [name, range] : chart.series) {
        lxw_chart_series* const series = ::chart_add_series(drawn, chart.categories.c_str(), range.c_str());
        ::chart_series_set_name(series, name.c_str());
    }
    ::chart_title_set_name(drawn, chart.title.c_str());
    // The axis of values: that of bars lies below, the library keeps its name.
    ::chart_axis_set_name(drawn->y_axis, chart.axis.c_str());
    if (bars)
        ::chart_axis_set_reverse(drawn->x_axis); // the first on top
    if (chart.series.size() < 2)
        ::chart_legend_set_position(drawn, LXW_CHART_LEGEND_NONE);
    requireWritten(::worksheet_insert_chart(m_cells->sheet, rowOf(row), columnOf(column), drawn), m_cells->name);
    m_cells->reach(row + kChartRows, column + kChartColumns);
}

const std::string& WorkbookSheet::name() const
{
    return m_cells->name;
}

void WorkbookSheet::finish()
{
    lxw_worksheet* const sheet = m_cells->sheet;
    for (std::size_t i = 0; i < m_cells->widths.size(); ++i)
        requireWritten(::worksheet_set_column(sheet, columnOf(i), columnOf(i), m_cells->widths[i], nullptr),
                       m_cells->name);
    ::worksheet_set_landscape(sheet);
    ::worksheet_fit_to_pages(sheet, 1, 0);
    requireWritten(::worksheet_print_area(sheet, 0, 0, rowOf(m_cells->rows - 1), columnOf(m_cells->columns - 1)),
                   m_cells->name);
    requireWritten(::worksheet_set_footer(sheet, "&L&F&C&A&RPage &P of &N"), m_cells->name);
}

struct Workbook::File {
    WorkbookFolder folder;
    lxw_workbook* book = nullptr;
    Formats formats{};
    std::deque<WorkbookSheet> sheets; // stay where they are
};

Workbook::Workbook(const std::string& title) : m_file(std::make_unique<File>())
{
    m_file->book = ::workbook_new(m_file->folder.file().c_str());
    if (!m_file->book)
        throw Error("not enough memory for the workbook");
    std::string validTitle = validUtf8(title);
    std::string author = "zelm " ZELM_VERSION;
    lxw_doc_properties properties{};
    properties.title = validTitle.data();
    properties.author = author.data();
    ::workbook_set_properties(m_file->book, &properties);
    m_file->formats = makeFormats(m_file->book);
}

Workbook::~Workbook()
{
    if (m_file->book)
        ::lxw_workbook_free(m_file->book);
}

WorkbookSheet& Workbook::sheet(const std::string& name)
{
    auto cells = std::make_unique<WorkbookSheet::Cells>();
    cells->name = name;
    cells->book = m_file->book;
    cells->sheet = ::workbook_add_worksheet(m_file->book, name.c_str());
    cells->formats = &m_file->formats;
    if (!cells->sheet)
        throw Error(fmt::format("the workbook takes no sheet {}", shown(name)));
    return m_file->sheets.emplace_back(std::move(cells));
}

std::string Workbook::finish()
{
    for (WorkbookSheet& sheet : m_file->sheets)
        sheet.finish();
    const lxw_error error = ::workbook_close(m_file->book); // frees it, too
    m_file->book = nullptr;
    if (error != LXW_NO_ERROR)
        throw Error(fmt::format("the workbook can't be written: {}", ::lxw_strerror(error)));
    return readFile(m_file->folder.file());
}

std::string columnLetters(std::size_t column)
{
    constexpr std::size_t letters = 26;
    std::string text;
    for (std::size_t rest = column + 1; rest > 0; rest = (rest - 1) / letters)
        text.insert(text.begin(), static_cast<char>('A' + (rest - 1) % letters));
    return text;
}

std::string cellAddress(std::size_t row, std::size_t column, bool fixed)
{
    return fmt::format("{0}{1}{0}{2}", fixed ? "$" : "", columnLetters(column), row + 1);
}

std::string formulaNumber(double value)
{
    return upper(fmt::format("{}", value));
}

} // namespace zelm::host
