#pragma once

#include "host/blocks/Block.h"

#include <optional>
#include <string>
#include <vector>

namespace zelm::host {

/// The words that a string input takes, as its row tells them: a list, or keys of tables, read from the data file.
/// Empty if any text is fine.
std::vector<std::string> legalWords(const Block& block, const ZelmCellInfo& cell);

/// The only numbers that an input takes. Empty if its row tells but the ends of a range.
std::vector<int> legalNumbers(const ZelmCellInfo& cell);

/// What an input takes, for people: "SDR, DDR, Clock or Async", "a key of IBUF", "from 0". Reads no data.
std::string legalText(const ZelmCellInfo& cell);

/// Where an output goes, for people: "VCCINT", "off chip", "shown", "in VCCINT_POWER".
std::string goesText(const ZelmCellInfo& cell);

/// Why a value can't stand in an input: what is expected, and the nearest words. Nothing if it can.
std::optional<std::string> whyIllegal(const Block& block, const ZelmCellInfo& cell, const Value& value);

/// Why a legal value is most likely a slip. Nothing if it is an ordinary one.
std::optional<std::string> whyUnlikely(const ZelmCellInfo& cell, const Value& value);

/// Why a value that somebody gives an input by hand, to see what comes of it, is most likely none that was meant.
/// Nothing if it is an ordinary one; an Error if unset cells read like that.
std::optional<std::string> doubtOf(const Block& block, const ZelmCellInfo& cell, const Value& value);

} // namespace zelm::host
