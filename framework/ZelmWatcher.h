#pragma once

#include "framework/ZelmExport.h"
#include "framework/ZelmInfo.h"
#include "framework/ZelmKey.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace zelm {

/// A cell of a parameter block: which of its three arrays, and its place there.
struct CellRef {
    ZelmCellInfo::Type type;
    int ordinal;

    bool operator==(const CellRef&) const = default;
};

/// What a table look-up of a formula asked for and got.
struct LookUp {
    const ZelmTableInfo& table;
    std::span<const Key> keys;
    std::variant<bool, int, float, std::string_view> value;
};

/// Is told what formulas do while a Watching of it lives.
class ZELM_EXPORT Watcher {
public:
    virtual ~Watcher() = default;

    /// A cell is asked for: by the formula that is being computed, or from outside.
    virtual void onRead(CellRef cell);
    /// The cell's formula (of an input: its default) starts, and has stored its value. What is read, computed and
    /// looked up between the two is its doing.
    virtual void onCompute(CellRef cell);
    virtual void onComputed(CellRef cell);
    virtual void onLookUp(const LookUp& lookUp);
    /// A look-up found nothing: in the table at that address, under that joined key.
    virtual void onMiss(const void* table, const std::string& key);

    /// The thread's innermost watcher of pulls, null if there is none.
    static Watcher* ofPulls();
    /// Whether it is a Dependencies, which look-ups don't interest.
    bool wantsReadsOnly() const
    {
        return m_wants == Wants::reads;
    }
    /// Tells the thread's innermost watcher of misses.
    static void miss(const void* table, const std::string& key);

protected:
    enum class Wants { pulls, reads, misses };
    /// Pulls: all but onMiss is called. Reads: neither is onLookUp; for Dependencies alone, which formulas call
    /// directly. Misses: only onMiss is, and the formulas keep their full speed.
    explicit Watcher(Wants wants) : m_wants(wants) {}
    Watcher(const Watcher&) = default;
    Watcher& operator=(const Watcher&) = default;

private:
    friend class Watching;

    Wants m_wants;
};

/// While one lives, the thread's formulas tell a watcher what they do. They nest: the innermost of its kind is told. A
/// run that nobody watches pays one branch for each pull and look-up.
class ZELM_EXPORT Watching {
public:
    explicit Watching(Watcher& watcher);
    ~Watching();
    Watching(const Watching&) = delete;
    Watching& operator=(const Watching&) = delete;

private:
    friend class Watcher;

    template <class Is>
    static Watcher* innermost(Is is);

    Watcher& m_watcher;
    Watching* m_outer;
};

} // namespace zelm
