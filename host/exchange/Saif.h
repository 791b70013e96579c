#pragma once

#include "host/exchange/Dump.h"

#include <string>

namespace zelm::host {

/// Switching activity (SAIF 2.0) in its backward form: what a simulation counted. What is cut or broken is an Error
/// with its line.
class Saif : public Dump {
public:
    explicit Saif(std::string file) : Dump(std::move(file)) {}

    bool hasWindows() const override
    {
        return false;
    }
    ScopeTree scopes() override;
    DumpCounts count(ScopeTree& tree, const DumpWindow& window,
                     const std::function<bool(const DumpVariable&)>& wants) override;
};

} // namespace zelm::host
