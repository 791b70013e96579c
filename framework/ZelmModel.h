#pragma once

#include "framework/ZelmExport.h"

#include <string>

/// Base of all model blocks: the formulas of one resource kind. A model has no state.
class ZELM_EXPORT ZelmModel {
public:
    virtual std::string className() const = 0;

protected:
    ZelmModel() = default;
    ZelmModel(const ZelmModel&) = default;
    ZelmModel& operator=(const ZelmModel&) = default;
    ~ZelmModel() = default;
};
