#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zelm::host {

/// How a cell of a workbook looks. Numbers that are given, and that a reader may write over, stand apart from those
/// that follow from them.
enum class Look { text, title, head, given, amount, share, total, totalShare };
inline constexpr std::size_t kLookCount = 8;

/// A chart over ranges of cells: "=Rails!$B$2:$B$9".
struct WorkbookChart {
    enum class Kind { bars, stackedColumns };
    Kind kind = Kind::bars;
    std::string title;
    std::string axis; ///< what is drawn, and its unit
    std::string categories;
    std::vector<std::pair<std::string, std::string>> series; ///< name and range
};

/// A sheet of a workbook; rows and columns count from 0. Text is never taken for a formula.
class WorkbookSheet {
public:
    struct Cells;
    explicit WorkbookSheet(std::unique_ptr<Cells> cells);
    ~WorkbookSheet();
    WorkbookSheet(WorkbookSheet&&) noexcept;

    void text(std::size_t row, std::size_t column, std::string_view text, Look look = Look::text);
    /// What is no number is written as that, and so is all that follows from it.
    void number(std::size_t row, std::size_t column, double value, Look look = Look::given);
    /// A formula, "=A1+1", and what it comes to, for readers that don't compute.
    void formula(std::size_t row, std::size_t column, const std::string& formula, double value,
                 Look look = Look::amount);
    void formula(std::size_t row, std::size_t column, const std::string& formula, const std::string& word);
    /// A row of heads, which stays in view and stands on each page unless another row does already.
    void heads(std::size_t row, const std::vector<std::string>& heads);
    void chart(std::size_t row, std::size_t column, const WorkbookChart& chart);
    const std::string& name() const;

private:
    friend class Workbook;
    void finish();

    std::unique_ptr<Cells> m_cells;
};

/// A workbook of sheets in the Office Open XML form.
class Workbook {
public:
    explicit Workbook(const std::string& title);
    ~Workbook();
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    /// The sheet stays where it is.
    WorkbookSheet& sheet(const std::string& name);
    /// The file's bytes; the last call.
    std::string finish();

private:
    struct File;
    std::unique_ptr<File> m_file;
};

/// "F12" or, for formulas that are to be copied, "$F$12".
std::string cellAddress(std::size_t row, std::size_t column, bool fixed = false);
/// "AB" for column 27.
std::string columnLetters(std::size_t column);
/// A number in a formula.
std::string formulaNumber(double value);

} // namespace zelm::host
