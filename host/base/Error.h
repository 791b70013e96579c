#pragma once

#include <stdexcept>

namespace zelm::host {

/// What a person did wrong or can mend. Printed on standard error; the tool then ends with exit code 2.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// One that lies with the characterisation data: a directory or file of them is missing or broken.
class DataError : public Error {
public:
    using Error::Error;
};

} // namespace zelm::host
