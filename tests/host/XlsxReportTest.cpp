#include "Archives.h"
#include "Designs.h"
#include "Tool.h"

#include "host/base/Workbook.h"
#include "host/exchange/Table.h"
#include "host/report/XlsxReport.h"

#include <cmath>
#include <fstream>
#include <map>
#include <pugixml.hpp>
#include <sstream>

namespace zelm::test::xlsxReportTest {

using namespace zelm::host;
using testing::HasSubstr;

namespace {

struct CellText {
    std::string formula;
    std::string value;
};

/// A workbook's cells by sheet and address, texts resolved.
class Book {
public:
    explicit Book(const std::string& file) : m_files(unpacked(file))
    {
        std::vector<std::string> strings;
        pugi::xml_document xml;
        xml.load_string(m_files.at("xl/sharedStrings.xml").c_str(), pugi::parse_default | pugi::parse_ws_pcdata);
        for (const pugi::xml_node string : xml.document_element().children("si"))
            strings.emplace_back(string.child("t").text().get());
        pugi::xml_document book;
        book.load_string(m_files.at("xl/workbook.xml").c_str());
        int number = 0;
        for (const pugi::xml_node sheet : book.document_element().child("sheets").children()) {
            const std::string name = sheet.attribute("name").value();
            m_names.push_back(name);
            m_parts[name] = "xl/worksheets/sheet" + std::to_string(++number) + ".xml";
            pugi::xml_document cells;
            cells.load_string(m_files.at(m_parts[name]).c_str());
            for (const pugi::xml_node row : cells.document_element().child("sheetData").children()) {
                for (const pugi::xml_node cell : row.children()) {
                    std::string value = cell.child("v").text().get();
                    if (std::string(cell.attribute("t").value()) == "s")
                        value = strings.at(std::stoul(value));
                    m_cells[name][cell.attribute("r").value()] = {cell.child("f").text().get(), value};
                }
            }
        }
    }

    const std::vector<std::string>& names() const
    {
        return m_names;
    }
    const Archive& files() const
    {
        return m_files;
    }
    const std::map<std::string, CellText>& sheet(const std::string& name) const
    {
        return m_cells.at(name);
    }
    /// The cell of a row, which its texts in the first columns name, under a head.
    std::string address(const std::string& sheet, const std::vector<std::string>& row, const std::string& head) const
    {
        const std::map<std::string, CellText>& cells = m_cells.at(sheet);
        const auto text = [&](std::size_t r, std::size_t c) {
            const auto found = cells.find(cellAddress(r, c));
            return found == cells.end() ? std::string() : found->second.value;
        };
        std::size_t column = 999;
        for (std::size_t r = 0; r < 300; ++r) {
            bool own = true;
            for (std::size_t c = 0; c < row.size(); ++c)
                own = own && text(r, c) == row[c];
            if (own && column != 999)
                return cellAddress(r, column);
            for (std::size_t c = 0; c < 60; ++c) {
                if (text(r, c) == head)
                    column = c;
            }
        }
        throw std::runtime_error("sheet " + sheet + " has no " + row.front() + " under " + head);
    }
    CellText cell(const std::string& sheet, const std::vector<std::string>& row, const std::string& head) const
    {
        return m_cells.at(sheet).at(address(sheet, row, head));
    }

    /// The book without what formulas came to, and one number written over: what another program must compute.
    void save(const std::string& file, const std::string& sheet, const std::string& address, double value) const
    {
        Archive files = m_files;
        for (const auto& [name, part] : m_parts) {
            pugi::xml_document xml;
            xml.load_string(files.at(part).c_str());
            for (const pugi::xml_node row : xml.document_element().child("sheetData").children()) {
                for (pugi::xml_node cell : row.children()) {
                    if (cell.child("f"))
                        cell.remove_child("v");
                    if (name == sheet && cell.attribute("r").value() == address)
                        cell.child("v").text().set(value, 17);
                }
            }
            std::ostringstream out;
            xml.save(out, "", pugi::format_raw);
            files[part] = out.str();
        }
        pack(files, file);
    }

private:
    Archive m_files;
    std::vector<std::string> m_names;
    std::map<std::string, std::string> m_parts;
    std::map<std::string, std::map<std::string, CellText>> m_cells;
};

std::string saved(const Scratch& scratch, const Estimate& estimate)
{
    const std::string file = scratch.path("book.xlsx");
    std::ofstream(file, std::ios::binary) << xlsxReport(estimate);
    return file;
}

// Two clocked groups on rails of their own, a rail inside another, supplies over supplies, and limits.
const char* const kDesign = R"({"name": "a<b & \"c\"", "device": {"part": "zq4410"},
    "environment": {"ambientTemperature": 40, "thetaJA": 0.5, "junctionLimit": 100},
    "supplies": {"core": {"rails": ["VCCINT"], "from": "bus", "maxCurrent": 40,
                          "efficiency": [[1, 0.8], [5, 0.92]]},
                 "bus": {"volts": 5, "from": "12V", "efficiency": 0.9}},
    "budgets": {"totalPower": 60, "rails": {"VCCINT": 0.001}},
    "groups": [{"block": "Bram", "name": "=1+1", "in": "top/x", "inputs": {"NUM_BRAMS": 100, "PORT_A_CLOCK": 300}},
               {"block": "Selv", "count": 4, "inputs": {"OUTPUT_IO_STANDARD": "SSTL12", "OUTPUT_ENABLE": 1}}]})";

Estimate supplied()
{
    return estimateOf(kDesign);
}

TEST(XlsxReport, SumsAmperesSharesAndMarginsAreFormulas)
{
    const Scratch scratch;
    const Estimate estimate = supplied();
    const Book book(saved(scratch, estimate));
    EXPECT_THAT(book.names(),
                testing::ElementsAre("Summary", "Groups", "Currents", "Rails", "Supplies", "Budgets", "Inputs"));
    const std::string process = estimate.side().process;
    const auto expect = [&](const CellText& cell, const char* formula, double value) {
        EXPECT_THAT(cell.formula, HasSubstr(formula));
        EXPECT_NEAR(std::stod(cell.value), value, 1e-12 * std::fabs(value)) << cell.formula;
    };
    expect(book.cell("Summary", {process}, "Total [W]"), "+", estimate.side().totalWatts);
    expect(book.cell("Summary", {process}, "Dynamic [W]"), "Groups!F4", estimate.dynamicWatts);
    expect(book.cell("Groups", {"=1+1"}, "Dynamic [W]"), "SUM(I2:", estimate.groups[0].watts);
    expect(book.cell("Groups", {"=1+1"}, "Share"), "/$F$4", estimate.groups[0].watts / estimate.dynamicWatts);
    const RailResult& core = *estimate.side().rail("VCCINT");
    expect(book.cell("Rails", {process, "VCCINT"}, "Total [A]"), "+", core.amperes());
    expect(book.cell("Rails", {process, "VCCINT"}, "Static [W]"), "*", core.staticWatts);
    const SupplyResult& supply = *estimate.side().supplies->find("core");
    expect(book.cell("Supplies", {process, "core"}, "Margin [A]"), "-", 40.0 - supply.loadAmperes);
    expect(book.cell("Supplies", {process, "core"}, "Efficiency"), "IF(", supply.efficiency);
    expect(book.cell("Supplies", {process, "board input"}, "Input [W]"), "L", estimate.side().supplies->inputWatts);
    expect(book.cell("Budgets", {"total power"}, "Margin " + process), "-", 60.0 - estimate.side().totalWatts);
    EXPECT_EQ(book.cell("Budgets", {"total power"}, "Verdict").value, "kept");
    EXPECT_EQ(book.cell("Budgets", {"current of VCCINT"}, "Verdict").value, "BROKEN");
    // A name that looks like a formula is a text.
    EXPECT_EQ(book.sheet("Groups").at("A2").formula, "");
    EXPECT_EQ(book.sheet("Groups").at("A2").value, "=1+1");
    EXPECT_EQ(book.cell("Inputs", {"=1+1", "Bram", "PORT_A_CLOCK"}, "Value").value, "300");
    EXPECT_EQ(book.cell("Inputs", {"=1+1", "Bram", "PORT_A_CLOCK"}, "Origin").value, "design");
}

TEST(XlsxReport, SheetsHaveFrozenHeadsPrintAreasAndCharts)
{
    const Scratch scratch;
    const Book book(saved(scratch, supplied()));
    const std::string& workbook = book.files().at("xl/workbook.xml");
    std::size_t charts = 0;
    for (const auto& [name, text] : book.files())
        charts += name.starts_with("xl/charts/chart") ? 1u : 0u;
    EXPECT_EQ(charts, 4u);
    for (std::size_t i = 1; i <= book.names().size(); ++i) {
        const std::string& name = book.names()[i - 1];
        EXPECT_THAT(book.files().at("xl/worksheets/sheet" + std::to_string(i) + ".xml"), HasSubstr("state=\"frozen\""))
            << name;
        EXPECT_THAT(workbook, HasSubstr("<definedName name=\"_xlnm.Print_Area\" localSheetId=\"" +
                                        std::to_string(i - 1) + "\">" + name + "!$A$1:"));
    }
}

TEST(XlsxReport, RunawayIsNoNumberAndBreaksItsBudget)
{
    const Scratch scratch;
    const Book book(saved(scratch, estimateOf(R"({"device": {"part": "zq4410"}, "budgets": {"junctionTemperature": 125},
        "environment": {"ambientTemperature": 100, "thetaJA": 50}, "groups": []})")));
    EXPECT_EQ(book.cell("Summary", {"TYP"}, "Junction [C]").formula, "NA()");
    EXPECT_EQ(book.cell("Summary", {"TYP"}, "Total [W]").value, "#N/A");
    EXPECT_EQ(book.cell("Budgets", {"junction temperature"}, "Verdict").value, "BROKEN");
}

TEST(XlsxReport, IsWrittenWholeOrNotAtAllAndNeverOverAnInput)
{
    const Scratch scratch;
    const std::string design = scratch.write("d.json", kDesign);
    const std::string report = scratch.write("r.xlsx", "old");
    EXPECT_EQ(scratch.run("estimate " + design + " --xlsx " + report).code, 0);
    EXPECT_EQ(Scratch::read(report).substr(0, 2), "PK");
    EXPECT_THAT(scratch.run("estimate " + design + " --xlsx " + design).err,
                HasSubstr("this run reads this file, so it isn't written over"));
    EXPECT_EQ(Scratch::read(design), kDesign);
    EXPECT_THAT(scratch.run("estimate " + design + " --xlsx " + report + " --html " + report).err,
                HasSubstr("two reports would be written to this file"));
    EXPECT_THAT(scratch.run("estimate " + design + " --xlsx /nonexistent/r.xlsx").err,
                HasSubstr("/nonexistent/r.xlsx: cannot be written"));
}

/// What a spreadsheet program computes: a sheet's cells by address.
class Recalculated {
public:
    Recalculated(const Scratch& scratch, const std::string& file)
    {
        const std::string command =
            "soffice '-env:UserInstallation=file://" + scratch.path("office") +
            "' --headless --convert-to "
            "'csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,false,false,false,false,-1' --outdir '" +
            scratch.path("csv") + "' '" + file + "' >'" + scratch.path("office.log") + "' 2>&1";
        if (std::system(command.c_str()) != 0)
            throw std::runtime_error("soffice failed: " + Scratch::read(scratch.path("office.log")));
        const std::string stem = std::filesystem::path(file).stem().string();
        for (const char* const sheet : {"Summary", "Groups", "Currents", "Rails", "Supplies", "Budgets"}) {
            const std::string csv = scratch.path("csv/" + stem + "-" + sheet + ".csv");
            for (const TableRow& row : readCsv(csv, Scratch::read(csv)).rows) {
                for (const TableCell& cell : row.cells)
                    m_cells[sheet][cellAddress(row.number - 1, cell.column)] = cell.text;
            }
        }
    }

    std::string text(const std::string& sheet, const std::string& address) const
    {
        return m_cells.at(sheet).at(address);
    }
    double number(const std::string& sheet, const std::string& address) const
    {
        const std::string shown = text(sheet, address);
        return shown.ends_with('%') ? std::stod(shown) / 100.0 : std::stod(shown);
    }

private:
    std::map<std::string, std::map<std::string, std::string>> m_cells;
};

TEST(XlsxReport, ASpreadsheetProgramComputesTheToolsNumbers)
{
    if (std::system("command -v soffice >/dev/null 2>&1") != 0)
        GTEST_SKIP() << "soffice isn't installed (Debian's package libreoffice-calc-nogui)";
    const Scratch scratch;
    const Estimate estimate = supplied();
    const Book book(saved(scratch, estimate));
    const std::string process = estimate.side().process;
    const std::string watts = book.address("Groups", {"=1+1"}, "VCCINT [W]");
    const double before = std::stod(book.sheet("Groups").at(watts).value);
    book.save(scratch.path("same.xlsx"), "Groups", watts, before);
    book.save(scratch.path("more.xlsx"), "Groups", watts, before + 1.0);

    const Recalculated same(scratch, scratch.path("same.xlsx"));
    std::size_t formulas = 0;
    for (const char* const sheet : {"Summary", "Groups", "Currents", "Rails", "Supplies", "Budgets"}) {
        for (const auto& [address, cell] : book.sheet(sheet)) {
            if (cell.formula.empty() || (std::string(sheet) == "Budgets" && address.starts_with("D")))
                continue; // verdicts are words
            ++formulas;
            const double value = std::stod(cell.value);
            EXPECT_NEAR(same.number(sheet, address), value, 1e-9 * std::fabs(value) + 1e-12)
                << sheet << "!" << address << " " << cell.formula;
        }
    }
    EXPECT_GT(formulas, 100u);
    EXPECT_EQ(same.text("Budgets", book.address("Budgets", {"total power"}, "Verdict")), "kept");
    EXPECT_EQ(same.text("Budgets", book.address("Budgets", {"current of VCCINT"}, "Verdict")), "BROKEN");

    // A watt more of a group is a watt more in all, 1 / volts amperes more of its rail, and so much margin less.
    const Recalculated more(scratch, scratch.path("more.xlsx"));
    const auto change = [&](const char* sheet, const std::vector<std::string>& row, const std::string& head) {
        const std::string address = book.address(sheet, row, head);
        return more.number(sheet, address) - same.number(sheet, address);
    };
    const double volts = estimate.side().rail("VCCINT")->volts;
    EXPECT_NEAR(change("Summary", {process}, "Total [W]"), 1.0, 1e-9);
    EXPECT_NEAR(change("Rails", {process, "VCCINT"}, "Total [A]"), 1.0 / volts, 1e-9);
    EXPECT_NEAR(change("Supplies", {process, "core"}, "Margin [A]"), -1.0 / volts, 1e-9);
    EXPECT_NEAR(change("Budgets", {"total power"}, "Margin " + process), -1.0, 1e-9);
    EXPECT_GT(change("Supplies", {process, "board input"}, "Input [W]"), 1.0);
}

} // namespace

} // namespace zelm::test::xlsxReportTest
