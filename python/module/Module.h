#pragma once

#include <pybind11/pybind11.h>

namespace zelm::python {

/// Sees to it that the data directory is chosen: from now on it stays.
void useData();

void addCalc(pybind11::module_& module);
void addDesign(pybind11::module_& module);

} // namespace zelm::python
