#pragma once

#include "host/blocks/Block.h"

#include <span>
#include <string>
#include <string_view>

namespace zelm::host {

/// What an output of a block is to the device.
enum class Role {
    rail,    ///< power or current of a supply rail
    offchip, ///< power that is burnt outside the device: shown apart
    shown    ///< a figure for people, part of no sum
};

/// One output that a block reports: which rail it loads. Its unit (uW, mW, W, mA, A) is the cell's own.
struct Output {
    std::string_view block;
    std::string_view cell;
    Role role;
    std::string_view rail;    ///< "VCCO" stands for the bank rail of the group's voltage
    std::string_view scaling; ///< an output that the power is multiplied with, empty if none
};

std::span<const Output> outputs();

/// A block that estimates one unit of what an input counts: the tool multiplies.
struct PerUnit {
    std::string_view block;
    std::string_view cell;
};

std::span<const PerUnit> perUnit();

/// An input that takes the voltage of a rail whose name differs from the cell's.
struct RailInput {
    std::string_view block;
    std::string_view cell;
    std::string_view rail;
};

std::span<const RailInput> railInputs();

/// A rail whose static current the model counts inside another rail's too.
struct NestedRail {
    std::string_view rail;
    std::string_view inside;
};

std::span<const NestedRail> nestedRails();

/// The bank rail of a voltage: 1.35 V is "VCCO135".
std::string bankRail(float volts);

} // namespace zelm::host
