#include "host/blocks/Formulas.h"

#include "host/blocks/FormulaRows.h"

#include <fmt/format.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <unordered_map>

namespace zelm::host {

namespace {

// The sources are as clang-format leaves them: a function's braces stand in lines of their own, as far in as its
// signature, 0 columns or, in a sheet, 4.

bool isWordCharacter(char c)
{
    return std::isalnum(static_cast<unsigned char>(c)) || c == '_';
}

// The word that ends, or begins, at a place of a text.
std::string_view wordBefore(std::string_view text, std::size_t end)
{
    end = std::min(end, text.size());
    while (end > 0 && text[end - 1] == ' ')
        --end;
    std::size_t begin = end;
    while (begin > 0 && isWordCharacter(text[begin - 1]))
        --begin;
    return text.substr(begin, end - begin);
}

std::string_view wordAt(std::string_view text, std::size_t begin)
{
    std::size_t end = begin;
    while (end < text.size() && isWordCharacter(text[end]))
        ++end;
    return text.substr(begin, end - begin);
}

// Calls visit(word, character before it, character behind it) for the words of code, without those of comments and
// literals.
template <class Visit>
void forEachWord(std::string_view code, Visit visit)
{
    char before = ' ';
    for (std::size_t at = 0; at < code.size();) {
        if (code.substr(at, 2) == "//") {
            at = std::min(code.find('\n', at), code.size());
        } else if (code[at] == '"' || (code[at] == '\'' && code.substr(at, 3).ends_with('\''))) {
            at = std::min(code.find(code[at], at + 1), code.size() - 1) + 1;
        } else if (isWordCharacter(code[at])) {
            const std::string_view word = wordAt(code, at);
            at += word.size();
            visit(word, before, at < code.size() ? code[at] : '\n');
            before = ' ';
        } else {
            before = code[at++];
        }
    }
}

bool isConstantName(std::string_view word)
{
    return word.size() > 1 && word[0] == 'k' && std::isupper(static_cast<unsigned char>(word[1]));
}

struct Function {
    std::string_view scope; ///< the sheet that it stands in; empty for those outside
    std::string_view signature;
    SourceText source;
};

struct Constant {
    std::string_view type;
    SourceText source;
};

// What a file defines.
struct Source {
    std::string_view name;
    std::string_view text;
    std::vector<std::size_t> lines; ///< where each begins, and the end
    std::vector<std::string_view> includes;
    std::map<std::string_view, std::string_view> bases; ///< of sheets
    std::multimap<std::string_view, Function> functions;
    std::map<std::string_view, Constant> constants;

    std::size_t lineCount() const
    {
        return lines.size() - 1;
    }
    std::string_view line(std::size_t index) const
    {
        return linesFrom(index, index);
    }
    // Both included, without the last one's end.
    std::string_view linesFrom(std::size_t first, std::size_t last) const
    {
        return text.substr(lines[first], lines[last + 1] - 1 - lines[first]);
    }
    SourceText sourceOf(std::size_t first, std::size_t last) const
    {
        return {name, first + 1, linesFrom(first, last)};
    }
};

// Lines that belong to what stands below them: its signature and the comment in front of it.
bool leadsOn(std::string_view line)
{
    return !line.empty() && line.find_first_not_of(' ') != std::string_view::npos && line[0] != '#' &&
           !(line.find("//") == std::string_view::npos &&
             (line.ends_with(';') || line.ends_with('}') || line.ends_with('{') || line.ends_with(':')));
}

bool isComment(std::string_view line)
{
    const std::size_t begin = line.find_first_not_of(' ');
    return begin != std::string_view::npos && line.substr(begin, 2) == "//";
}

void readFunction(Source& source, std::size_t brace, std::string_view scope)
{
    std::size_t first = brace;
    while (first > 0 && leadsOn(source.line(first - 1)))
        --first;
    std::size_t signature = first;
    while (signature < brace &&
           (isComment(source.line(signature)) || source.line(signature).find("template <") != std::string_view::npos))
        ++signature;
    if (signature == brace)
        return;
    const std::string_view words = source.linesFrom(signature, brace - 1);
    const std::size_t parenthesis = words.find('(');
    if (parenthesis == std::string_view::npos)
        return;
    const std::string end = std::string(source.line(brace).find('{'), ' ') + "}";
    std::size_t last = brace;
    while (last + 1 < source.lineCount() && source.line(last) != end)
        ++last;
    source.functions.emplace(wordBefore(words, parenthesis), Function{scope, words, source.sourceOf(first, last)});
}

// The line on which what begins on a line ends: outside of all brackets, with one of those characters.
std::size_t endOf(const Source& source, std::size_t first, std::string_view ends)
{
    int depth = 0;
    for (std::size_t last = first; last < source.lineCount(); ++last) {
        std::string_view line = source.line(last);
        line = line.substr(0, line.find("//"));
        for (const char c : line)
            depth += c == '{' || c == '(' || c == '[' ? 1 : c == '}' || c == ')' || c == ']' ? -1 : 0;
        const std::size_t end = line.find_last_not_of(' ');
        if (depth == 0 && end != std::string_view::npos && ends.find(line[end]) != std::string_view::npos)
            return last;
    }
    return first;
}

void readConstant(Source& source, std::size_t first)
{
    const std::string_view line = source.line(first);
    for (std::size_t at = line.find(" k"); at != std::string_view::npos; at = line.find(" k", at + 1)) {
        const std::string_view name = wordAt(line, at + 1);
        if (!isConstantName(name))
            continue;
        source.constants.emplace(name,
                                 Constant{wordBefore(line, at), source.sourceOf(first, endOf(source, first, ";"))});
        return;
    }
}

// "    kA1 {...}," in a list of constants of one type, or "RAIL(kVccint, ..." where a macro makes them.
void readListed(Source& source, std::size_t first)
{
    const std::string_view line = source.line(first);
    const std::size_t begin = line.find_first_not_of(' ');
    const std::size_t parenthesis = line.find_first_of("( ", begin);
    const bool isMade =
        begin == 0 && parenthesis != std::string_view::npos && std::isupper(line[0]) && line[parenthesis] == '(';
    const std::string_view name = wordAt(line, isMade ? parenthesis + 1 : begin);
    const std::size_t next = line.find_first_not_of(' ', begin + name.size());
    if (!isConstantName(name) || (!isMade && (next == std::string_view::npos || line[next] != '{')))
        return;
    source.constants.emplace(name, Constant{{}, source.sourceOf(first, endOf(source, first, isMade ? ")" : ",;"))});
}

// "struct ZelmOrvaneBramModel::Sheet : zelm::Sheet<ZelmOrvaneBramModel> {": the name and the base without its
// arguments. Models all call theirs Sheet.
void readSheet(Source& source, std::string_view line, std::string_view& scope)
{
    const std::size_t colon = line.find(" : ");
    scope = wordBefore(line, colon == std::string_view::npos ? line.find(" {") : colon);
    if (colon != std::string_view::npos)
        source.bases[scope] = wordBefore(line, line.find('<', colon));
}

Source read(std::string_view name, std::string_view text)
{
    Source source{name, text, {0}, {}, {}, {}, {}};
    for (std::size_t at = text.find('\n'); at != std::string_view::npos; at = text.find('\n', at + 1))
        source.lines.push_back(at + 1);
    std::string_view scope;
    for (std::size_t i = 0; i < source.lineCount(); ++i) {
        const std::string_view line = source.line(i);
        if (line.starts_with("#include \""))
            source.includes.push_back(line.substr(10, line.find('"', 10) - 10));
        else if (line.starts_with("struct "))
            readSheet(source, line, scope);
        else if (line == "};")
            scope = {};
        else if (line == "{" || line == "    {")
            readFunction(source, i, scope);
        else if (line.find_first_not_of(' ') <= 4 && line.find("constexpr ") != std::string_view::npos)
            readConstant(source, i);
        else if (line.find_first_not_of(' ') <= 4)
            readListed(source, i);
    }
    return source;
}

std::map<std::string_view, std::string_view> splitSources()
{
    std::map<std::string_view, std::string_view> files;
    const std::string_view all = formulaSources();
    for (std::size_t at = 0; at < all.size();) {
        const std::size_t end = std::min(all.find('\1', at + 1), all.size());
        const std::size_t name = all.find('\n', at);
        files[all.substr(at + 1, name - at - 1)] = all.substr(name + 1, end - name - 1);
        at = end;
    }
    return files;
}

const std::map<std::string_view, std::string_view>& sourceFiles()
{
    static const std::map<std::string_view, std::string_view> files = splitSources();
    return files;
}

std::string_view lineOf(std::string_view text, int number)
{
    std::size_t begin = 0;
    for (; number > 1; --number)
        begin = text.find('\n', begin) + 1;
    return text.substr(begin, text.find('\n', begin) - begin);
}

// The sources of one block: its model's, and those that it takes base sheets and functions from.
class BlockSources {
public:
    explicit BlockSources(const Block& block) : m_block(&block), m_rows(formulaRows(block.name))
    {
        add(fmt::format("{}/ZelmOrvane{}Model.cpp", block.subsystem, block.name));
        for (std::string_view sheet = "Sheet"; !sheet.empty();) {
            m_chain.push_back(sheet);
            std::string_view base;
            for (const Source& source : m_sources) {
                if (const auto found = source.bases.find(sheet); found != source.bases.end())
                    base = found->second;
            }
            sheet = base == "Sheet" ? std::string_view() : base; // zelm::Sheet holds no formulas
        }
    }

    const Formula& formulaOf(const ZelmCellInfo& cell)
    {
        const auto place = static_cast<std::size_t>(&cell - m_block->cells.data());
        const auto [known, isNew] = m_formulas.try_emplace(place);
        if (isNew)
            known->second = find(m_rows[place]);
        return known->second;
    }

    std::vector<SourceText> helpersOf(const std::vector<SourceText>& pieces) const
    {
        std::vector<SourceText> found = pieces;
        for (const SourceText& piece : pieces)
            addHelpers(piece.text, found);
        found.erase(found.begin(), found.begin() + static_cast<std::ptrdiff_t>(pieces.size()));
        return found;
    }

private:
    void add(std::string_view name)
    {
        const auto& files = sourceFiles();
        const auto file = files.find(name);
        if (file == files.end() || !m_added.insert(file->first).second)
            return;
        m_sources.push_back(read(file->first, file->second));
        const std::vector<std::string_view> includes = m_sources.back().includes;
        for (const std::string_view include : includes) {
            if (include.ends_with(".h"))
                add(include);
        }
    }

    // How far up the chain of sheets a function stands: behind all if in none.
    std::size_t depthOf(const Function& function) const
    {
        return static_cast<std::size_t>(std::find(m_chain.begin(), m_chain.end(), function.scope) - m_chain.begin());
    }

    // Of that name, those of the lowest sheet.
    std::vector<const Function*> functionsOf(std::string_view name) const
    {
        std::vector<const Function*> found;
        for (const Source& source : m_sources) {
            const auto [first, last] = source.functions.equal_range(name);
            for (auto at = first; at != last; ++at) {
                const std::size_t depth = depthOf(at->second);
                const bool isOther = depth == m_chain.size() && !at->second.scope.empty();
                if (isOther || (!found.empty() && depth > depthOf(*found.front())))
                    continue;
                if (!found.empty() && depth < depthOf(*found.front()))
                    found.clear();
                found.push_back(&at->second);
            }
        }
        return found;
    }

    const Constant* constantOf(std::string_view name) const
    {
        for (const Source& source : m_sources) {
            if (const auto found = source.constants.find(name); found != source.constants.end())
                return &found->second;
        }
        return nullptr;
    }

    // The type of what a family's row names: kVccint, kOutputs[2], or what a function gives: input("POD12").
    std::string_view typeOf(std::string_view member) const
    {
        const std::string_view name = wordAt(member, 0);
        if (const Constant* constant = constantOf(name))
            return constant->type;
        const std::vector<const Function*> functions = functionsOf(name);
        if (functions.empty())
            return {};
        const std::string_view signature = functions.front()->signature;
        const std::size_t reference = signature.find("& ");
        return reference == std::string_view::npos ? std::string_view() : wordBefore(signature, reference);
    }

    // One row of a constant that has many, by its number or by a word in it; all if it has few.
    static SourceText rowOf(const Constant& constant, std::string_view member)
    {
        const std::size_t bracket = member.find('[');
        const std::size_t quote = member.find('"');
        const SourceText& all = constant.source;
        if (quote == std::string_view::npos && bracket == std::string_view::npos)
            return all;
        const std::string_view word = quote == std::string_view::npos
                                          ? std::string_view()
                                          : member.substr(quote + 1, member.rfind('"') - quote - 1);
        std::size_t number =
            bracket == std::string_view::npos ? 0 : std::stoul(std::string(wordAt(member, bracket + 1)));
        std::size_t line = all.line;
        for (std::size_t at = 0; at < all.text.size(); ++line) {
            const std::size_t end = std::min(all.text.find('\n', at), all.text.size());
            const std::string_view text = all.text.substr(at, end - at);
            at = end + 1;
            const std::size_t begin = text.find_first_not_of(' ');
            if (line == all.line || begin == std::string_view::npos || text[begin] != '{')
                continue;
            const bool isIt = word.empty() ? number-- == 0
                                           : text.find(fmt::format("({})", word)) != std::string_view::npos ||
                                                 text.find(fmt::format("\"{}\"", word)) != std::string_view::npos;
            if (isIt)
                return {all.file, line, text};
        }
        return all;
    }

    void addMember(std::string_view member, Formula& formula) const
    {
        const auto add = [&](const SourceText& text) {
            if (std::find(formula.member.begin(), formula.member.end(), text) == formula.member.end())
                formula.member.push_back(text);
        };
        forEachWord(member, [&](std::string_view word, char, char next) {
            if (const Constant* constant = constantOf(word))
                add(rowOf(*constant, next == '[' ? member : std::string_view()));
            if (next != '(' || member.find('"') == std::string_view::npos)
                return;
            for (const Function* function : functionsOf(word)) {
                forEachWord(function->source.text, [&](std::string_view inBody, char, char) {
                    if (const Constant* constant = constantOf(inBody))
                        add(rowOf(*constant, member));
                });
            }
        });
    }

    // Adds what a text names to the pieces found, and what that names.
    void addHelpers(std::string_view text, std::vector<SourceText>& found) const
    {
        const auto add = [&](const SourceText& helper) {
            if (std::find(found.begin(), found.end(), helper) != found.end())
                return;
            found.push_back(helper);
            addHelpers(helper.text, found);
        };
        forEachWord(text, [&](std::string_view word, char before, char next) {
            if (isConstantName(word)) {
                if (const Constant* constant = constantOf(word))
                    add(constant->source);
                return;
            }
            const bool isCalled = next == '(' || next == '<';
            const bool isPointedAt = before == ':'; // &Sheet::byLoad
            if (!isCalled && !isPointedAt)
                return;
            for (const Function* function : functionsOf(word))
                add(function->source);
        });
    }

    Formula find(const FormulaRow& row) const
    {
        Formula formula;
        formula.call = row.formula;
        formula.argument = row.member;
        if (row.formula.empty()) {
            const auto& files = sourceFiles();
            const auto file = files.find(row.file);
            if (file == files.end())
                return formula;
            formula.own = {file->first, static_cast<std::size_t>(row.line), lineOf(file->second, row.line)};
            return formula;
        }
        std::vector<const Function*> functions = functionsOf(row.formula.substr(0, row.formula.find('<')));
        if (functions.size() > 1) {
            const std::string type = fmt::format("const {}& ", typeOf(row.member));
            std::erase_if(functions, [&](const Function* function) {
                return function->signature.find(type) == std::string_view::npos;
            });
        }
        if (functions.size() != 1)
            return formula;
        formula.own = functions.front()->source;
        addMember(row.member, formula);
        return formula;
    }

    const Block* m_block;
    std::span<const FormulaRow> m_rows;
    std::vector<Source> m_sources;
    std::set<std::string_view> m_added;
    std::vector<std::string_view> m_chain;               // the model's sheet and its bases
    std::unordered_map<std::size_t, Formula> m_formulas; // by the cells' places
};

} // namespace

namespace {

// Each read at the first question. One asks after the other.
class AllSources {
public:
    template <class Ask>
    decltype(auto) ask(const Block& block, Ask askSources)
    {
        const std::lock_guard lock(m_mutex);
        return askSources(m_known.try_emplace(&block, block).first->second);
    }

private:
    std::mutex m_mutex;
    std::unordered_map<const Block*, BlockSources> m_known;
};

AllSources& allSources()
{
    static AllSources sources;
    return sources;
}

} // namespace

const Formula& formulaOf(const Block& block, const ZelmCellInfo& cell)
{
    return allSources().ask(block, [&](BlockSources& sources) -> const Formula& { return sources.formulaOf(cell); });
}

std::vector<SourceText> helpersOf(const Block& block, const std::vector<SourceText>& pieces)
{
    return allSources().ask(block, [&](BlockSources& sources) { return sources.helpersOf(pieces); });
}

std::optional<std::string_view> sourceFile(std::string_view name)
{
    const auto found = sourceFiles().find(name);
    return found == sourceFiles().end() ? std::nullopt : std::optional(found->second);
}

} // namespace zelm::host
