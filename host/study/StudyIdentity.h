#pragma once

#include "host/base/JsonFwd.h"
#include "host/blocks/Block.h"

#include <string>
#include <vector>

namespace zelm::host {

struct Estimate;

/// The blocks whose data an estimate rests on.
std::vector<const Block*> blocksOf(const Estimate& estimate);

/// What a study is of, whatever it does with it: the design as read, with what it includes, the data files of these
/// blocks, and the tool's version.
Json studyIdentity(const char* study, const std::string& designName, const Json& design,
                   const std::vector<const Block*>& blocks);

} // namespace zelm::host
