#pragma once

#include "framework/ZelmData.h"
#include "framework/ZelmExport.h"
#include "framework/ZelmHelperUtils.h"
#include "framework/ZelmInfo.h"
#include "framework/ZelmTable.h"

#include <span>
#include <string>
#include <string_view>
#include <vector>

/// A data block: the tables that Derived's rows name, loaded from "powercfg/orvane/<class name>.cfg". Read-only after
/// load, so that any number of threads may look up; reset and loadCfgData must not run beside a reader.
template <class Derived>
class ZELM_EXPORT ZelmDataBlock : public ZelmData {
public:
    /// The one instance, built and loaded on first use. A load that fails leaves as an exception, and the next call
    /// tries again.
    static const Derived& getGlobal();
    static Derived& getMutableGlobal();

    std::string className() const override;
    std::string reflect() const override;

    /// Reads the file into the tables, over what they hold. False if a table is missing: the tables behind it in the
    /// block's order then stay as they were.
    bool loadCfgData();
    /// Empties all tables, then loads. The search list is read again too.
    bool reset();

    /// Without keys, the block's table names in their fixed order. Else the keys of the table keys[0] below the other
    /// keys, unordered: in full if whole, else their next level. Empty for an unknown table.
    std::vector<std::string> getCfgKeys(std::vector<std::string> keys, bool whole) const;

    /// Whether the table of that name holds nothing, or there is none.
    bool isEmpty(std::string_view group) const;

    /// How often the file has been read: what was worked out from the tables holds as long as this stays.
    unsigned loads() const
    {
        return m_loads;
    }

    /// The group name of the table of this block at that address, empty if it is none: see zelm::LookUpMisses.
    std::string_view groupOf(const void* table) const;

protected:
    ZelmDataBlock() = default;

private:
    unsigned m_loads = 0;
};
