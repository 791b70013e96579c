#include "host/exchange/Saif.h"

#include "host/base/Text.h"
#include "host/base/Units.h"

#include <fmt/format.h>

#include <algorithm>
#include <tuple>

namespace zelm::host {

namespace {

constexpr std::size_t kDeepestSaif = 4 * kDeepestScope;
constexpr std::size_t kLongestSaifWord = 65536;

class SaifReader {
public:
    SaifReader(const std::string& file, ScopeTree& tree, const std::function<bool(const DumpVariable&)>* wants)
        : m_bytes(file), m_tree(&tree), m_wants(wants)
    {
    }

    void read()
    {
        bool begun = false;
        for (Word word = next(); word != Word::end; word = next()) {
            if (word == Word::open)
                open();
            else if (word == Word::close)
                close();
            else if (m_open.empty())
                m_bytes.fail(fmt::format("expected (SAIFILE ...), found {}", abbreviated(m_text)));
            begun = true;
        }
        if (!begun || !m_open.empty())
            m_bytes.fail(fmt::format("the file ends within {} parentheses that are open", m_open.size()));
    }

    double secondsPerUnit() const
    {
        return m_secondsPerUnit;
    }
    DumpCounts counts()
    {
        return {std::move(m_nets), m_duration};
    }

private:
    enum class Word { open, close, text, quoted, end };
    enum class Part { other, file, instance, nets, net };
    struct Open {
        Part part = Part::other;
        std::uint32_t scope = 0;
    };

    void skipBlanks()
    {
        for (int c = m_bytes.peek(); c >= 0; c = m_bytes.peek()) {
            if (c > ' ')
                return;
            m_bytes.skip();
        }
    }

    // Whether what begins with a slash is a comment, which is passed over, too.
    bool skipComment()
    {
        m_bytes.skip();
        const int kind = m_bytes.peek();
        if (kind != '/' && kind != '*')
            return false;
        m_bytes.skip();
        int before = 0;
        for (int c = m_bytes.peek(); c >= 0; before = c, c = m_bytes.peek()) {
            m_bytes.skip();
            if (kind == '/' ? c == '\n' : c == '/' && before == '*')
                return true;
        }
        if (kind == '*')
            m_bytes.fail("the file ends in a comment");
        return true;
    }

    Word next()
    {
        m_text.clear();
        for (;;) {
            skipBlanks();
            const int c = m_bytes.peek();
            if (c < 0)
                return Word::end;
            if (c == '(' || c == ')') {
                m_bytes.skip();
                return c == '(' ? Word::open : Word::close;
            }
            if (c == '"')
                return quotedWord();
            if (c == '/') {
                if (skipComment())
                    continue;
                m_text = "/"; // the divider
            }
            return plainWord();
        }
    }

    void append(int c)
    {
        m_text += static_cast<char>(c);
        if (m_text.size() > kLongestSaifWord)
            m_bytes.fail(fmt::format("a word is longer than {} bytes", kLongestSaifWord));
    }

    Word quotedWord()
    {
        m_bytes.skip();
        for (int c = m_bytes.peek(); c >= 0; c = m_bytes.peek()) {
            m_bytes.skip();
            if (c == '"')
                return Word::quoted;
            append(c);
        }
        m_bytes.fail("the file ends in a text");
    }

    // A backslash takes the next character for what it is.
    Word plainWord()
    {
        for (int c = m_bytes.peek(); c > ' ' && c != '(' && c != ')'; c = m_bytes.peek()) {
            m_bytes.skip();
            if (c == '\\') {
                c = m_bytes.peek();
                if (c <= ' ')
                    break;
                m_bytes.skip();
            }
            append(c);
        }
        return Word::text;
    }

    std::string text(const char* of)
    {
        const Word word = next();
        if (word != Word::text && word != Word::quoted)
            m_bytes.fail(fmt::format("{} is missing", of));
        return m_text;
    }

    double number(const char* of)
    {
        const std::string word = text(of);
        const std::optional<double> value = plainNumber(word);
        if (!value || *value < 0.0)
            m_bytes.fail(fmt::format("{}: expected a number from 0, found {}", of, abbreviated(word)));
        return *value;
    }

    void open()
    {
        if (m_open.size() >= kDeepestSaif)
            m_bytes.fail(fmt::format("parentheses are more than {} deep", kDeepestSaif));
        const Open within = m_open.empty() ? Open{} : m_open.back();
        m_open.push_back({Part::other, within.scope});
        const Word word = next();
        if (word == Word::close)
            return close();
        if (word == Word::open)
            m_bytes.fail("an opening parenthesis without a word");
        if (word == Word::end)
            return;
        if (within.part == Part::nets)
            return openNet();
        if (within.part == Part::net)
            return readCount();
        openSection(m_open.size() == 1);
    }

    void openSection(bool first)
    {
        const std::string keyword = upper(m_text);
        if (first != (keyword == "SAIFILE"))
            m_bytes.fail(first ? fmt::format("expected (SAIFILE ...), found {}", abbreviated(m_text))
                               : "SAIFILE stands within another");
        if (keyword == "INSTANCE")
            return openInstance();
        if (keyword == "NET" || keyword == "PORT")
            m_open.back().part = Part::nets;
        else if (keyword == "SAIFVERSION")
            requireWord("2.0", "the version");
        else if (keyword == "DIRECTION")
            requireWord("backward", "the direction");
        else if (keyword == "DURATION")
            m_duration = number("the DURATION");
        else if (keyword == "TIMESCALE")
            readTimescale();
    }

    void requireWord(const char* expected, const char* of)
    {
        const std::string word = text(of);
        if (lower(word) != expected)
            m_bytes.fail(fmt::format("{} is {}, and only {} is read", of, abbreviated(word), expected));
    }

    void readTimescale()
    {
        std::string scale = text("the TIMESCALE");
        if (scale.find_first_not_of("0123456789.") == std::string::npos)
            scale += text("the TIMESCALE's unit");
        const std::optional<double> seconds = timescaleSeconds(scale);
        if (!seconds)
            m_bytes.fail(fmt::format("{} is no time scale", abbreviated(scale)));
        m_secondsPerUnit = *seconds;
    }

    // The name of a module may stand, in quotes, in front of that of the instance.
    void openInstance()
    {
        const Word word = next();
        if (word == Word::quoted)
            text("an instance's name");
        else if (word != Word::text)
            m_bytes.fail("an instance's name is missing");
        Open& here = m_open.back();
        if (m_tree->depth(here.scope) >= kDeepestScope)
            m_bytes.fail(fmt::format("instances are more than {} deep", kDeepestScope));
        here.part = Part::instance;
        here.scope = m_tree->add(here.scope, m_text);
        if (m_tree->size() > kMostScopes + 1)
            m_bytes.fail(fmt::format("there are more than {} instances", kMostScopes));
    }

    void openNet()
    {
        m_open.back().part = Part::net;
        m_name = m_text;
        m_net = NetCount{};
    }

    // (T0 90) (T1 10) (TX 0) (TC 7) (IG 0)
    void readCount()
    {
        const std::string keyword = upper(m_text);
        if (keyword == "T0")
            m_net.known += number("T0");
        else if (keyword == "T1") {
            m_net.high = number("T1");
            m_net.known += m_net.high;
        } else if (keyword == "TC")
            m_net.toggles = number("TC");
    }

    void close()
    {
        if (m_open.empty())
            m_bytes.fail("a closing parenthesis too many");
        if (m_open.back().part == Part::net && m_wants) {
            if (++m_variables > kMostVariables)
                m_bytes.fail(fmt::format("there are more than {} nets", kMostVariables));
            DumpVariable variable;
            variable.scope = m_open.back().scope;
            std::tie(variable.name, variable.select) = nameAndSelect(m_name);
            variable.net = static_cast<std::uint32_t>(m_nets.size());
            if ((*m_wants)(variable))
                m_nets.push_back(m_net);
        }
        m_open.pop_back();
    }

    DumpWords m_bytes;
    ScopeTree* m_tree;
    const std::function<bool(const DumpVariable&)>* m_wants;
    std::string m_text;
    std::vector<Open> m_open;
    std::size_t m_variables = 0;
    std::string m_name;
    NetCount m_net;
    std::vector<NetCount> m_nets;
    double m_secondsPerUnit = 1e-9;
    double m_duration = 0.0;
};

} // namespace

ScopeTree Saif::scopes()
{
    ScopeTree tree;
    SaifReader reader(m_file, tree, nullptr);
    reader.read();
    m_secondsPerUnit = reader.secondsPerUnit();
    return tree;
}

DumpCounts Saif::count(ScopeTree& tree, const DumpWindow& /*window*/,
                       const std::function<bool(const DumpVariable&)>& wants)
{
    SaifReader reader(m_file, tree, &wants);
    reader.read();
    return reader.counts();
}

} // namespace zelm::host
