#pragma once

#include "framework/ZelmExport.h"

#include <string>

/// An exception class for hosts. The library itself never throws it: what leaves the library comes from the standard
/// library, Boost.Filesystem or libconfig.
class ZELM_EXPORT ZelmException {
public:
    ZelmException(const char* message, const char* function);
    virtual ~ZelmException() = default;
    ZelmException(const ZelmException&) = default;
    ZelmException& operator=(const ZelmException&) = default;

    /// "Zelm Exception: <message> [ in function: <function> ]"
    virtual const char* what() const;

private:
    std::string m_text;
};
