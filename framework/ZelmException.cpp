#include "framework/ZelmException.h"

ZelmException::ZelmException(const char* message, const char* function)
    : m_text(std::string("Zelm Exception: ") + message + " [ in function: " + function + " ]")
{
}

const char* ZelmException::what() const
{
    return m_text.c_str();
}
