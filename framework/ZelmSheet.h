#pragma once

#include "framework/ZelmArithmetic.h"
#include "framework/ZelmDependencies.h"
#include "framework/ZelmKey.h"
#include "framework/ZelmModelBlock.h"
#include "framework/ZelmText.h"
#include "framework/ZelmWatcher.h"

#include <array>
#include <string>
#include <string_view>
#include <type_traits>

namespace zelm {

/// A text that was pulled. Look-ups take it as a key, whose hash is worked out when the first asks; the key lives until
/// the run ends.
class PulledText {
public:
    PulledText(const std::string& text, Key& key) : m_text(text), m_key(key) {}

    [[gnu::always_inline]] operator const Key&() const // NOLINT(google-explicit-constructor)
    {
        if (m_key.text().data() != m_text.data() || m_key.text().size() != m_text.size()) [[unlikely]]
            makeKey(m_key, m_text);
        return m_key;
    }
    operator std::string_view() const // NOLINT(google-explicit-constructor)
    {
        return m_text;
    }
    std::string_view text() const
    {
        return m_text;
    }

    [[gnu::always_inline]] friend bool operator==(const PulledText& a, std::string_view b)
    {
        return a.m_text == b;
    }

private:
    // Apart, so that what mostly happens is short enough to stand where it is needed.
    [[gnu::noinline]] static void makeKey(Key& key, const std::string& text)
    {
        key = Key(text);
    }

    const std::string& m_text;
    Key& m_key;
};

/// The cell that stands offset places behind first: how a family's member finds the cells of its metrics.
template <class Enum>
constexpr Enum cellBehind(Enum first, int offset)
{
    return static_cast<Enum>(static_cast<int>(first) + offset);
}

/// One run of a model's formulas over one parameter block and one data block. A model's own sheet derives from this;
/// its rows write an accessor for each cell, under the function's name, and for each table
/// (framework/ZelmAccessors.inc). By hand stand the formulas, each named compute and the cell's function.
///
/// Every pull of a cell and every look-up goes through here, so that a Watcher sees them all.
template <class Model>
class Sheet : public ZelmHelperUtils {
public:
    using Params = typename Model::Params;
    using Data = typename Model::Data;
    using Key = zelm::Key;
    using Text = PulledText;
    using Base = Sheet; ///< what the next sheet derives from: a base sheet names itself here
    using IntCell = typename Params::IntEnum;
    using FloatCell = typename Params::FloatEnum;
    using StringCell = typename Params::StringEnum;

    Sheet(Params& params, const Data& data) : m_params(params), m_data(data), m_watcher(Watcher::ofPulls())
    {
        if (m_watcher && m_watcher->wantsReadsOnly())
            m_dependencies = static_cast<Dependencies*>(m_watcher);
    }
    Sheet(const Sheet&) = delete;
    Sheet& operator=(const Sheet&) = delete;

    /// The cell if it is set, else its formula's value, narrowed, stored and returned. A value that is the sentinel
    /// itself counts as not computed and is computed again at the next pull. Families reach their cells by it.
    int value(IntCell cell) const
    {
        return pull(cell, m_params[cell]);
    }
    float value(FloatCell cell) const
    {
        return pull(cell, m_params[cell]);
    }
    /// The same for a loop over many cells, most of which are set: a call would cost more than the look at one.
    [[gnu::always_inline]] float valueInLoop(FloatCell cell) const
    {
        return pull(cell, m_params[cell]);
    }
    [[gnu::always_inline]] Text value(StringCell cell) const
    {
        std::string& slot = m_params[cell];
        pull(cell, slot);
        return {slot, m_keys[static_cast<std::size_t>(cell)]};
    }

protected:
    ~Sheet() = default;

    /// A formula's row in the tables of ZelmAccessors.inc.
    template <class Slot>
    using Formula = void (*)(const Sheet& sheet, Slot& slot);

    /// The same in a model with families of many members: a formula that serves all takes the member from its row.
    template <class Slot>
    struct MemberFormula {
        void (*compute)(const Sheet& sheet, Slot& slot, const void* member);
        const void* member;

        void operator()(const Sheet& sheet, Slot& slot) const
        {
            compute(sheet, slot, member);
        }
    };

    /// The model's sheet: for base sheets, which several models share.
    const auto& self() const
    {
        return static_cast<const typename Model::Sheet&>(*this);
    }

    const Data& data() const
    {
        return m_data;
    }

    /// What a look-up in the table of that place found, told to the watcher.
    template <class Table, class Found, class... Keys>
    Found noted(Table table, Found found, const Keys&... keys) const
    {
        if (m_watcher && !m_dependencies) [[unlikely]] {
            const Key list[] = {keys...};
            m_watcher->onLookUp({Data::tables()[static_cast<std::size_t>(table)], list, found});
        }
        return found;
    }

private:
    template <class Cell, class Slot>
    [[gnu::always_inline]] Slot& pull(Cell cell, Slot& slot) const
    {
        if (m_watcher) [[unlikely]]
            return watchedPull(cell, slot);
        if (isUnset(slot))
            self().formulaOf(cell)(*this, slot);
        return slot;
    }

    template <class Cell, class Slot>
    [[gnu::noinline]] Slot& watchedPull(Cell cell, Slot& slot) const
    {
        using Type = ZelmCellInfo::Type;
        constexpr Type type = std::is_same_v<Slot, int>     ? Type::integer
                              : std::is_same_v<Slot, float> ? Type::real
                                                            : Type::text;
        const CellRef ref{type, static_cast<int>(cell)};
        if (!m_dependencies) [[unlikely]]
            return toldPull(ref, cell, slot);
        if (!m_dependencies->readsAsBefore(ref)) [[unlikely]]
            return otherPull(ref, cell, slot);
        return isUnset(slot) ? notedCompute(ref, cell, slot) : slot;
    }

    // Apart, so that what happens most, a read of a cell that is set, calls nothing.
    template <class Cell, class Slot>
    [[gnu::noinline]] Slot& otherPull(CellRef ref, Cell cell, Slot& slot) const
    {
        m_dependencies->readOther(ref);
        return isUnset(slot) ? notedCompute(ref, cell, slot) : slot;
    }

    template <class Cell, class Slot>
    [[gnu::noinline]] Slot& notedCompute(CellRef ref, Cell cell, Slot& slot) const
    {
        const Dependencies::Frame waiting = m_dependencies->enter(ref);
        self().formulaOf(cell)(*this, slot);
        m_dependencies->leave(waiting);
        return slot;
    }

    template <class Cell, class Slot>
    [[gnu::noinline]] Slot& toldPull(CellRef ref, Cell cell, Slot& slot) const
    {
        m_watcher->onRead(ref);
        if (isUnset(slot)) {
            m_watcher->onCompute(ref);
            self().formulaOf(cell)(*this, slot);
            m_watcher->onComputed(ref);
        }
        return slot;
    }

    Params& m_params;
    const Data& m_data;
    Watcher* m_watcher;
    Dependencies* m_dependencies = nullptr; // the watcher, if that is what it is
    mutable std::array<Key, static_cast<std::size_t>(Params::LastString)> m_keys;
};

/// Puts a formula's value into its cell: the one place that narrows.
template <class Value>
void store(int& slot, Value value)
{
    static_assert(std::is_same_v<Value, int>, "truncate or convert in the formula");
    slot = value;
}

template <class Value>
void store(float& slot, Value value)
{
    static_assert(!std::is_same_v<Value, int>, "convert in the formula");
    slot = static_cast<float>(value);
}

inline void store(std::string& slot, std::string value)
{
    slot = std::move(value);
}

inline void store(std::string& slot, std::string_view value)
{
    slot = value;
}

inline void store(std::string& slot, const char* value)
{
    slot = value;
}

inline void store(std::string& slot, const Composed& value)
{
    value.storeIn(slot);
}

/// The formula of the cells that hold a metric of a family, whichever the member.
template <class Model, class ModelSheet, class Member, auto metric, class Slot>
void computeMember(const Sheet<Model>& base, Slot& slot, const void* member)
{
    const auto& sheet = static_cast<const ModelSheet&>(base);
    store(slot, (sheet.*metric)(*static_cast<const Member*>(member)));
}

} // namespace zelm
