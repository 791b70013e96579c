#include "host/exchange/Vcd.h"

#include "host/base/Text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <functional>
#include <tuple>
#include <utility>

namespace zelm::host {

namespace {

// A net's number by its identifier code. Those of up to three characters, which most dumps have alone, are found
// without a hash.
class VcdCodes {
public:
    static constexpr std::uint32_t kUnknown = 0xFFFFFFFF;
    static constexpr std::uint32_t kUnwanted = 0xFFFFFFFE;

    VcdCodes() : m_short(kRadix * kRadix * kRadix, kUnknown) {}

    std::uint32_t find(std::string_view code) const
    {
        if (const std::size_t index = shortIndex(code); index < m_short.size())
            return m_short[index];
        const Slot& slot = m_long[slotOf(keyOf(code))];
        return slot.key == 0 ? kUnknown : slot.net;
    }
    void set(std::string_view code, std::uint32_t net)
    {
        if (const std::size_t index = shortIndex(code); index < m_short.size()) {
            m_short[index] = net;
            return;
        }
        if (2 * m_used >= m_long.size())
            grow();
        Slot& slot = m_long[slotOf(keyOf(code))];
        m_used += slot.key == 0 ? 1u : 0u;
        slot = {keyOf(code), net};
    }

private:
    static constexpr std::size_t kRadix = 95; // printable characters, and none

    static std::size_t shortIndex(std::string_view code)
    {
        constexpr std::size_t none = kRadix * kRadix * kRadix;
        if (code.size() > 3)
            return none;
        std::size_t index = 0;
        for (const char c : code) {
            const auto digit = static_cast<std::size_t>(static_cast<unsigned char>(c)) - ' ';
            if (digit >= kRadix)
                return none;
            index = index * kRadix + digit;
        }
        return index;
    }

    // The characters themselves, or a hash of a code that is longer than any counter needs; never 0.
    static std::uint64_t keyOf(std::string_view code)
    {
        constexpr std::uint64_t hashed = std::uint64_t{1} << 63;
        std::uint64_t key = 0;
        if (code.size() > sizeof key)
            return std::hash<std::string_view>()(code) | hashed;
        for (const char c : code)
            key = key << 8 | static_cast<unsigned char>(c);
        return code.empty() ? hashed : key & ~hashed;
    }

    // Where a key is, or the free slot where it would be.
    std::size_t slotOf(std::uint64_t key) const
    {
        constexpr std::uint64_t golden = 0x9E3779B97F4A7C15;
        std::size_t slot = (key * golden) >> m_shift;
        while (m_long[slot].key != 0 && m_long[slot].key != key)
            slot = (slot + 1) & (m_long.size() - 1);
        return slot;
    }
    void grow()
    {
        const std::vector<Slot> old = std::exchange(m_long, std::vector<Slot>(2 * m_long.size()));
        --m_shift;
        for (const Slot& slot : old) {
            if (slot.key != 0)
                m_long[slotOf(slot.key)] = slot;
        }
    }

    struct Slot {
        std::uint64_t key = 0;
        std::uint32_t net = 0;
    };
    static constexpr unsigned kFirstSlotBits = 10;

    std::vector<std::uint32_t> m_short;
    std::vector<Slot> m_long = std::vector<Slot>(std::size_t{1} << kFirstSlotBits);
    std::size_t m_used = 0;
    unsigned m_shift = 64 - kFirstSlotBits; // the hash's upper bits are the slot
};

// What a character of a value says of a bit: its value and whether it is known.
constexpr std::uint8_t kBitHigh = 1;
constexpr std::uint8_t kBitKnown = 2;
constexpr std::uint8_t kNoBit = 4;
constexpr std::array<std::uint8_t, 256> bitTable()
{
    std::array<std::uint8_t, 256> table{};
    table.fill(kNoBit);
    table['0'] = table['l'] = table['L'] = kBitKnown;
    table['1'] = table['h'] = table['H'] = kBitKnown | kBitHigh;
    for (const char unknown : std::string_view("xXzZuUwW-"))
        table[static_cast<unsigned char>(unknown)] = 0;
    return table;
}
constexpr std::array<std::uint8_t, 256> kBits = bitTable();

std::uint8_t bitOf(char c)
{
    return kBits[static_cast<unsigned char>(c)];
}

constexpr std::uint32_t kWordBits = 64;

// A net at work: 64 bits to a word, values and which are known.
struct VcdNet {
    std::uint64_t value = 0; // of nets that fit into a word
    std::uint64_t known = 0;
    std::uint64_t since = 0;
    std::uint64_t toggles = 0;
    std::uint32_t bits = 1;
    std::uint32_t highBits = 0;
    std::uint32_t knownBits = 0;
    std::uint32_t words = 0; // where those of wider nets begin
    double high = 0.0;
    double knownTime = 0.0;
};

class VcdScanner {
public:
    explicit VcdScanner(const std::string& file, ScopeTree& tree) : m_words(file), m_tree(&tree) {}

    /// Reads the header. Without a wish for variables only scopes are taken.
    void readHeader(const std::function<bool(const DumpVariable&)>* wants)
    {
        for (;;) {
            const std::string_view word = m_words.next();
            if (word.empty())
                m_words.fail("the file ends in its header: there is no $enddefinitions");
            if (word == "$enddefinitions") {
                skipToEnd("$enddefinitions");
                return;
            }
            if (word == "$scope")
                openScope();
            else if (word == "$upscope") {
                if (m_scope == 0)
                    m_words.fail("$upscope without a $scope");
                m_scope = m_tree->parent(m_scope);
                skipToEnd("$upscope");
            } else if (word == "$var")
                declare(wants);
            else if (word == "$timescale")
                readTimescale();
            else if (word.starts_with('$'))
                skipToEnd(std::string(word));
            else
                m_words.fail(fmt::format("expected a $ word of the header, found {}", abbreviated(word)));
        }
    }

    double secondsPerUnit() const
    {
        return m_secondsPerUnit;
    }

    DumpCounts readChanges(const DumpWindow& window)
    {
        m_window = window;
        m_now = window.from;
        m_counting = window.from == 0;
        for (VcdNet& net : m_nets)
            net.since = m_now;
        for (;;) {
            const std::string_view word = m_words.next();
            if (word.empty() || !take(word))
                break;
        }
        return finish();
    }

private:
    std::string_view part(const char* of)
    {
        const std::string_view word = m_words.next();
        if (word.empty())
            m_words.fail(fmt::format("the file ends in {}", of));
        return word;
    }

    void skipToEnd(const std::string& of)
    {
        const std::size_t line = m_words.line();
        for (;;) {
            const std::string_view word = m_words.next();
            if (word == "$end")
                return;
            if (word.empty())
                m_words.fail(fmt::format("the file ends in the {} of line {}", abbreviated(of), line));
        }
    }

    void openScope()
    {
        if (part("a $scope") == "$end")
            m_words.fail("a $scope needs a kind and a name");
        std::string_view name = part("a $scope");
        if (name == "$end") // begin blocks without a name
            name = "";
        if (m_tree->depth(m_scope) >= kDeepestScope)
            m_words.fail(fmt::format("scopes are more than {} deep", kDeepestScope));
        if (name.starts_with('\\'))
            name.remove_prefix(1);
        m_scope = m_tree->add(m_scope, name);
        if (m_tree->size() > kMostScopes + 1)
            m_words.fail(fmt::format("there are more than {} scopes", kMostScopes));
        if (!name.empty())
            skipToEnd("$scope");
    }

    void readTimescale()
    {
        std::string text;
        for (;;) {
            const std::string_view word = part("$timescale");
            if (word == "$end")
                break;
            text += word;
            if (text.size() > 40)
                break;
        }
        const std::optional<double> seconds = timescaleSeconds(text);
        if (!seconds)
            m_words.fail(fmt::format("{} is no time scale; expected 1, 10 or 100 of s, ms, us, ns, ps or fs",
                                     abbreviated(text)));
        m_secondsPerUnit = *seconds;
    }

    // $var wire 8 # data [7:0] $end
    void declare(const std::function<bool(const DumpVariable&)>* wants)
    {
        if (!wants)
            return skipToEnd("$var");
        constexpr std::string_view noNets[] = {"real", "realtime", "parameter", "event",
                                               "time", "integer",  "string",    "real_parameter"};
        DumpVariable variable;
        variable.scope = m_scope;
        const std::string_view kind = part("a $var");
        variable.isNet = std::find(std::begin(noNets), std::end(noNets), kind) == std::end(noNets);
        const bool isReal = kind.starts_with("real") || kind == "string" || kind == "event";
        const std::string_view size = part("a $var");
        const auto parsed = std::from_chars(size.data(), size.data() + size.size(), variable.bits);
        if (parsed.ec != std::errc() || parsed.ptr != size.data() + size.size() || variable.bits > kMostNetBits)
            m_words.fail(
                fmt::format("{} is no size of a variable, which has 1 to {} bits", abbreviated(size), kMostNetBits));
        const std::string code(part("a $var"));
        std::string name(part("a $var"));
        if (code == "$end" || name == "$end")
            m_words.fail("a $var needs a kind, a size, a code and a name");
        readSelect(name);
        if (++m_variables > kMostVariables)
            m_words.fail(fmt::format("there are more than {} variables", kMostVariables));
        // An escaped name has a backslash in front, and its brackets are its own.
        if (name.starts_with('\\'))
            variable.name = std::string_view(name).substr(1);
        else
            std::tie(variable.name, variable.select) = nameAndSelect(name);
        want(variable, code, isReal || variable.bits == 0, *wants);
    }

    // What stands behind a name, to the end: its range, in one word or more.
    void readSelect(std::string& name)
    {
        const bool escaped = name.starts_with('\\');
        for (std::string_view word = part("a $var"); word != "$end"; word = part("a $var")) {
            if (!escaped && name.size() < kMostSelect)
                name += word;
        }
    }

    void want(DumpVariable& variable, const std::string& code, bool isReal,
              const std::function<bool(const DumpVariable&)>& wants)
    {
        const std::uint32_t known = m_codes.find(code);
        const bool counted = known < VcdCodes::kUnwanted;
        if (counted && m_nets[known].bits != variable.bits)
            m_words.fail(fmt::format("{} has {} bits, and {} under another name of its code {}",
                                     abbreviated(variable.name), variable.bits, m_nets[known].bits, abbreviated(code)));
        variable.net = counted ? known : static_cast<std::uint32_t>(m_nets.size());
        const bool wanted = !isReal && wants(variable);
        if (counted || !wanted) {
            if (!counted)
                m_codes.set(code, VcdCodes::kUnwanted);
            return;
        }
        m_bits += variable.bits;
        if (m_bits > kMostDumpBits)
            m_words.fail(fmt::format("the variables have more than {} bits", kMostDumpBits));
        VcdNet net;
        net.bits = variable.bits;
        if (variable.bits > kWordBits) {
            net.words = static_cast<std::uint32_t>(m_wide.size());
            m_wide.resize(m_wide.size() + std::size_t{2} * wordsOf(variable.bits));
        }
        m_nets.push_back(net);
        m_codes.set(code, variable.net);
    }

    static constexpr std::size_t kMostSelect = 4096;

    static std::size_t wordsOf(std::uint32_t bits)
    {
        return (bits + kWordBits - 1) / kWordBits;
    }

    // Whether to go on.
    bool take(std::string_view word)
    {
        const char lead = word.front();
        if (bitOf(lead) != kNoBit) {
            setScalar(lead, word.substr(1));
            return true;
        }
        switch (lead) {
        case 'b':
        case 'B':
            setVector(word.substr(1));
            return true;
        case '#':
            return setTime(word.substr(1));
        case 'r':
        case 'R':
        case 's':
        case 'S':
            static_cast<void>(net(part("a value: its code is missing")));
            return true;
        case '$':
            if (word == "$comment")
                skipToEnd("$comment");
            else if (word != "$dumpvars" && word != "$dumpall" && word != "$dumpon" && word != "$dumpoff" &&
                     word != "$end")
                m_words.fail(fmt::format("{} is no word of value changes", abbreviated(word)));
            return true;
        default:
            m_words.fail(fmt::format("expected a value change or a time, found {}", abbreviated(word)));
        }
    }

    bool setTime(std::string_view text)
    {
        std::uint64_t time = 0;
        const auto parsed = std::from_chars(text.data(), text.data() + text.size(), time);
        if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size())
            m_words.fail(fmt::format("#{} is no time", abbreviated(text)));
        if (m_timed && time < m_time)
            m_words.fail(fmt::format("time goes back from {} to {}", m_time, time));
        const bool begins =
            !m_timed && std::none_of(m_nets.begin(), m_nets.end(), [](const VcdNet& one) { return one.knownBits > 0; });
        if (begins && time > m_window.from) { // nothing is known before
            m_window.from = time;
            for (VcdNet& one : m_nets)
                one.since = time;
        }
        m_timed = true;
        m_time = time;
        m_now = std::min(std::max(time, m_window.from), m_window.to);
        m_counting = time >= m_window.from;
        return time < m_window.to;
    }

    VcdNet* net(std::string_view code)
    {
        const std::uint32_t found = m_codes.find(code);
        if (found < VcdCodes::kUnwanted)
            return &m_nets[found];
        if (found == VcdCodes::kUnknown)
            m_words.fail(code.empty() ? "a value without the code of its variable"
                                      : fmt::format("no variable has the code {}", abbreviated(code)));
        return nullptr;
    }

    void addTime(VcdNet& one) const
    {
        const auto units = static_cast<double>(m_now - one.since);
        one.high += units * one.highBits;
        one.knownTime += units * one.knownBits;
        one.since = m_now;
    }

    void setScalar(char value, std::string_view code)
    {
        VcdNet* const one = net(code);
        if (!one)
            return;
        if (one->bits != 1)
            return fill(*one, std::string_view(&value, 1));
        addTime(*one);
        const std::uint8_t bit = bitOf(value);
        const std::uint64_t high = bit & kBitHigh;
        const std::uint64_t known = (bit & kBitKnown) >> 1;
        one->toggles += (high ^ one->value) & known & one->known & (m_counting ? 1u : 0u);
        one->value = high;
        one->known = known;
        one->highBits = static_cast<std::uint32_t>(high);
        one->knownBits = static_cast<std::uint32_t>(known);
    }

    void setVector(std::string_view digits)
    {
        m_digits.assign(digits); // the code's word takes the buffer
        if (digits.empty())
            m_words.fail("a vector without digits");
        const std::string_view code = m_words.next();
        if (code.empty())
            m_words.fail("the file ends in a vector: its code is missing");
        if (VcdNet* const one = net(code))
            fill(*one, m_digits);
    }

    // Digits are right-aligned; in front of them the leftmost goes on, a 1 as 0.
    void fill(VcdNet& one, std::string_view digits)
    {
        if (digits.size() > one.bits) {
            const std::string_view more = digits.substr(0, digits.size() - one.bits);
            // What is in front may but repeat what would stand there anyway.
            const char filling = bitOf(digits[more.size()]) & kBitKnown ? '0' : digits[more.size()];
            if (more.find_first_not_of(filling) != std::string_view::npos)
                m_words.fail(fmt::format("a vector of {} digits for a variable of {} bits", digits.size(), one.bits));
            digits.remove_prefix(more.size());
        }
        addTime(one);
        const bool extendsKnown = (bitOf(digits.front()) & kBitKnown) != 0;
        std::uint32_t high = 0;
        std::uint32_t allKnown = 0;
        const std::size_t words = wordsOf(one.bits);
        std::size_t end = digits.size();
        for (std::size_t i = 0; i < words; ++i) {
            const std::size_t begin = end > kWordBits ? end - kWordBits : 0;
            std::uint64_t value = 0;
            std::uint64_t known = 0;
            for (const char c : digits.substr(begin, end - begin)) {
                const std::uint8_t bit = bitOf(c);
                if (bit == kNoBit)
                    m_words.fail(fmt::format("{} is no digit of a vector", abbreviated(std::string_view(&c, 1))));
                value = value << 1 | (bit & kBitHigh);
                known = known << 1 | (bit & kBitKnown) >> 1;
            }
            const std::size_t given = end - begin;
            const std::size_t here = std::min<std::size_t>(kWordBits, one.bits - i * kWordBits);
            if (extendsKnown && given < here)
                known |= (here == kWordBits ? ~std::uint64_t{0} : (std::uint64_t{1} << here) - 1) &
                         ~((std::uint64_t{1} << given) - 1);
            std::uint64_t& oldValue = words == 1 ? one.value : m_wide[one.words + 2 * i];
            std::uint64_t& oldKnown = words == 1 ? one.known : m_wide[one.words + 2 * i + 1];
            if (m_counting)
                one.toggles += static_cast<std::uint64_t>(std::popcount((value ^ oldValue) & known & oldKnown));
            oldValue = value;
            oldKnown = known;
            high += static_cast<std::uint32_t>(std::popcount(value));
            allKnown += static_cast<std::uint32_t>(std::popcount(known));
            end = begin;
        }
        one.highBits = high;
        one.knownBits = allKnown;
    }

    DumpCounts finish()
    {
        DumpCounts counts;
        if (m_timed)
            counts.duration = static_cast<double>(m_now) - static_cast<double>(std::min(m_window.from, m_now));
        for (VcdNet& one : m_nets) {
            addTime(one);
            counts.nets.push_back({one.bits, static_cast<double>(one.toggles), one.high, one.knownTime});
        }
        return counts;
    }

    DumpWords m_words;
    ScopeTree* m_tree;
    std::uint32_t m_scope = 0;
    double m_secondsPerUnit = 1e-9; // unless the header says it
    std::size_t m_variables = 0;
    std::size_t m_bits = 0;
    VcdCodes m_codes;
    std::vector<VcdNet> m_nets;
    std::vector<std::uint64_t> m_wide; // value and known, by turns, the lowest bits first
    std::string m_digits;
    DumpWindow m_window;
    std::uint64_t m_time = 0;
    std::uint64_t m_now = 0; // within the window
    bool m_timed = false;
    bool m_counting = true;
};

} // namespace

ScopeTree Vcd::scopes()
{
    ScopeTree tree;
    VcdScanner scanner(m_file, tree);
    scanner.readHeader(nullptr);
    m_secondsPerUnit = scanner.secondsPerUnit();
    return tree;
}

DumpCounts Vcd::count(ScopeTree& tree, const DumpWindow& window, const std::function<bool(const DumpVariable&)>& wants)
{
    VcdScanner scanner(m_file, tree);
    scanner.readHeader(&wants);
    return scanner.readChanges(window);
}

} // namespace zelm::host
