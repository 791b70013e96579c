#include "host/CheckData.h"

#include "host/Block.h"
#include "host/Error.h"
#include "host/LegalWords.h"
#include "host/Text.h"

#include "framework/ZelmData.h"

#include <fmt/format.h>
#include <libconfig.h++>

#include <set>

namespace zelm::host {

namespace {

// Where a block's file has its tables, for messages.
class Lines {
public:
    explicit Lines(const Block& block)
        : m_path(ZelmData::getQTADataDir(block.dataFile()) + "/" + block.dataFile()),
          m_root(fmt::format("ZelmOrvane{}Data", block.name))
    {
        m_cfg.readFile(m_path.c_str());
    }

    // The deepest group on the way to a missing key that the file does have.
    std::string where(const std::string& table, const std::string& key)
    {
        std::string path = fmt::format("{}.{}", m_root, table);
        unsigned int line = m_cfg.exists(path) ? m_cfg.lookup(path).getSourceLine() : 0;
        std::size_t start = 0;
        for (std::size_t dot = key.find('.'); dot != std::string::npos; dot = key.find('.', start)) {
            path.append(1, '.').append(key, start, dot - start);
            if (!m_cfg.exists(path))
                break;
            line = m_cfg.lookup(path).getSourceLine();
            start = dot + 1;
        }
        return fmt::format("{}:{}", m_path, line);
    }

private:
    std::string m_path;
    std::string m_root;
    libconfig::Config m_cfg;
};

struct Choice {
    const ZelmCellInfo* cell;
    std::vector<Value> values;
};

std::vector<Choice> choicesOf(const Block& block)
{
    std::vector<Choice> choices;
    for (const ZelmCellInfo& cell : block.cells) {
        if (cell.kind != ZelmCellInfo::Kind::userInput)
            continue;
        std::vector<Value> values = legalValues(block, cell);
        if (!values.empty())
            choices.push_back({&cell, std::move(values)});
    }
    return choices;
}

// Runs a block over its choices and gathers the rows that it didn't find.
class Prober {
public:
    explicit Prober(const Block& block) : m_block(block), m_choices(choicesOf(block)) {}

    std::set<std::pair<std::string, std::string>> missing()
    {
        // All combinations where there are few enough, else every pair of choices: keys join a few words each.
        double combinations = 1.0;
        for (const Choice& choice : m_choices)
            combinations *= static_cast<double>(choice.values.size());
        constexpr double affordable = 20000.0;
        if (combinations <= affordable) {
            std::vector<std::size_t> all;
            for (std::size_t i = 0; i < m_choices.size(); ++i)
                all.push_back(i);
            combine(all, 0, {});
        } else {
            for (std::size_t i = 0; i < m_choices.size(); ++i)
                for (std::size_t j = i + 1; j < m_choices.size(); ++j)
                    combine({i, j}, 0, {});
        }
        return std::move(m_missing);
    }

private:
    using Setting = std::pair<const ZelmCellInfo*, const Value*>;

    void combine(const std::vector<std::size_t>& which, std::size_t depth, std::vector<Setting> settings)
    {
        if (depth == which.size()) {
            probe(settings);
            return;
        }
        const Choice& choice = m_choices[which[depth]];
        settings.emplace_back();
        for (const Value& value : choice.values) {
            settings.back() = {choice.cell, &value};
            combine(which, depth + 1, settings);
        }
    }

    void probe(const std::vector<Setting>& settings)
    {
        const auto instance = m_block.create();
        for (const auto& [cell, value] : settings)
            instance->set(*cell, *value);
        const LookUpMisses misses;
        instance->calculate();
        for (const MissingRow& row : m_block.missingRows(misses))
            m_missing.emplace(row.table, row.key);
    }

    const Block& m_block;
    std::vector<Choice> m_choices;
    std::set<std::pair<std::string, std::string>> m_missing;
};

} // namespace

DataCheck checkData()
{
    DataCheck check;
    check.whole = true;
    TextTable summary({"Block", "Tables", "Rows", "Verdict"});
    for (const Block& block : blocks()) {
        std::size_t rows = 0;
        std::size_t wrong = 0;
        try {
            block.load();
            for (const ZelmTableInfo& table : block.tables)
                rows += block.keys({std::string(table.group)}, true).size();
            std::set<std::pair<std::string, std::string>> missing = Prober(block).missing();
            std::erase_if(missing, [&](const auto& row) { return isMeantToMiss(block, {row.first, row.second}); });
            if (!missing.empty()) {
                Lines lines(block);
                for (const auto& [table, key] : missing)
                    check.text += fmt::format("{}: {} has no row {}\n", lines.where(table, key), table, key);
            }
            wrong = missing.size();
        } catch (const std::exception& error) {
            check.text += fmt::format("{}\n", error.what());
            wrong = 1;
        }
        check.whole = check.whole && wrong == 0;
        summary.row({std::string(block.name), std::to_string(block.tables.size()), std::to_string(rows),
                     wrong == 0 ? "whole" : fmt::format("{} wrong", wrong)});
    }
    if (!check.text.empty())
        check.text += '\n';
    check.text += summary.text();
    return check;
}

} // namespace zelm::host
