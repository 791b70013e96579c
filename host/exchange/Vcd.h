#pragma once

#include "host/exchange/Dump.h"

#include <string>

namespace zelm::host {

/// A value change dump (IEEE 1364) of four states. What is cut or broken is an Error with its line.
class Vcd : public Dump {
public:
    explicit Vcd(std::string file) : Dump(std::move(file)) {}

    bool hasWindows() const override
    {
        return true;
    }
    ScopeTree scopes() override;
    DumpCounts count(ScopeTree& tree, const DumpWindow& window,
                     const std::function<bool(const DumpVariable&)>& wants) override;
};

} // namespace zelm::host
