#pragma once

#include "framework/ZelmExport.h"

#include <string>

/// Base of all parameter blocks: the cells through which a host talks to a model.
class ZELM_EXPORT ZelmParams {
public:
    virtual ~ZelmParams();
    virtual std::string className() const = 0;
    /// All cells as text, one line per cell, unset ones too.
    virtual std::string reflect() const = 0;

protected:
    ZelmParams() = default;
    ZelmParams(const ZelmParams&) = default;
    ZelmParams& operator=(const ZelmParams&) = default;
};
