#pragma once

#include "framework/ZelmExport.h"

#include <string>

// what is the one virtual operation that hosts were promised. Exceptions are copied and caught by reference, never
// deleted through a base, so the destructor needn't be one.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"

/// An exception class for hosts. The library itself never throws it: what leaves the library comes from the standard
/// library, Boost.Filesystem or libconfig.
class ZELM_EXPORT ZelmException {
public:
    ZelmException(const char* message, const char* function);

    /// "Zelm Exception: <message> [ in function: <function> ]"
    virtual const char* what() const;

private:
    std::string m_text;
};

#pragma GCC diagnostic pop
