#include "host/study/Fit.h"

#include "host/base/Error.h"
#include "host/base/InOrder.h"
#include "host/base/Text.h"
#include "host/blocks/Catalogue.h"
#include "host/design/Design.h"
#include "host/estimate/RunningDesign.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <set>

namespace zelm::host {

namespace {

struct GradeWord {
    const char* letter;
    const char* word;
};
constexpr GradeWord kTemperatures[] = {{"e", "EXTENDED"}, {"i", "INDUSTRIAL"}, {"m", "MILITARY"}};

std::string temperatureLetter(const std::string& wished)
{
    for (const GradeWord& grade : kTemperatures) {
        if (wished == grade.word)
            return grade.letter;
    }
    return wished;
}

// A wish that no part of the catalogue meets is most likely a slip.
void refuseUnknownWish(const char* option, const std::string& wished, const std::string& meant, PartField field)
{
    if (wished.empty())
        return;
    std::set<std::string> known;
    for (const std::string& part : orderableParts())
        known.insert(split(part, '_').at(field));
    if (known.contains(meant))
        return;
    const std::vector<std::string> words(known.begin(), known.end());
    throw Error(fmt::format("{} {}: no part of the catalogue has it; there are {}{}", option, abbreviated(wished),
                            orList(words), suggestion(wished, words)));
}

std::vector<std::string> wishedParts(const FitWish& wish)
{
    const std::string letter = temperatureLetter(wish.temperature);
    const std::string package = lower(wish.package);
    refuseUnknownWish("--speed", wish.speed, wish.speed, speedField);
    refuseUnknownWish("--temperature", wish.temperature, letter, temperatureField);
    refuseUnknownWish("--package", wish.package, package, packageField);
    std::vector<std::string> parts;
    for (const std::string& part : orderableParts()) {
        const std::vector<std::string> fields = split(part, '_');
        const auto has = [&](PartField field, const std::string& wished) {
            return wished.empty() || fields.at(field) == wished;
        };
        if (has(speedField, wish.speed) && has(temperatureField, letter) && has(packageField, package))
            parts.push_back(part);
    }
    if (parts.empty())
        throw Error("no part of the catalogue has all that the options ask for");
    return parts;
}

// The same design on another part, whose grades are the part's own.
Design onPart(const Design& design, const std::string& part)
{
    const auto move = [&](Design& moved) {
        Device device;
        device.part = part;
        device.process = design.device->process;
        device.overdrive = design.device->overdrive;
        moved.device = device;
    };
    Design moved = design;
    move(moved);
    for (Mode& mode : moved.modes) {
        auto then = std::make_shared<Design>(*mode.design);
        move(*then);
        mode.design = std::move(then);
    }
    return moved;
}

FitPart fitPart(const Design& design, const std::string& part)
{
    FitPart result;
    result.part = part;
    const std::vector<std::string> fields = split(part, '_');
    result.device = upper(fields.at(deviceField));
    result.package = fields.at(packageField);
    try {
        const Estimate estimate = zelm::host::estimate(onPart(design, part));
        for (const Utilisation& use : estimate.utilisation) {
            if (use.used > use.available)
                result.lacking.push_back(use);
        }
        for (const BudgetResult& budget : estimate.budgets) {
            if (budget.broken())
                result.broken.push_back(budget.name);
        }
        for (const Side& side : estimate.sides) {
            result.sides.push_back({side.process, side.totalWatts, side.staticWatts, side.junction});
            if (!side.settles())
                result.broken.push_back(fmt::format("thermal runaway at {}", side.process));
        }
        result.notes = estimate.warnings;
    } catch (const Error& error) {
        result.why = error.what();
    }
    return result;
}

// Runaways and parts that can't be estimated come last.
bool isBetter(const FitPart& a, const FitPart& b)
{
    const auto rank = [](const FitPart& part) { return part.fits() && part.keeps() ? 0 : part.fits() ? 1 : 2; };
    const auto watts = [](const FitPart& part) {
        const double total = part.sides.empty() ? std::nan("") : part.sides.front().totalWatts;
        return std::isnan(total) ? std::numeric_limits<double>::infinity() : total;
    };
    return rank(a) != rank(b) ? rank(a) < rank(b) : watts(a) < watts(b);
}

// A design may name its device alone: then all of its parts that agree with the grades are marked.
bool isDesignsPart(const Device& device, const std::string& part)
{
    const std::vector<std::string> fields = split(part, '_');
    const auto agrees = [&](const std::string& word, const std::string& ofPart) {
        return word.empty() || word == ofPart;
    };
    std::string temperature = device.temperatureGrade;
    for (const GradeWord& grade : kTemperatures)
        temperature = temperature == grade.word ? grade.letter : temperature;
    const std::string screen = device.powerScreen.substr(0, 1); // STANDARD, LOW
    if (device.part == part)
        return true;
    return lower(device.part) == fields.at(deviceField) && agrees(device.speedGrade, fields.at(speedField)) &&
           agrees(device.voltageGrade, fields.at(voltageField)) && agrees(temperature, fields.at(temperatureField)) &&
           agrees(screen, fields.at(screenField));
}

} // namespace

Fit fit(const std::string& designFile, const FitWish& wish)
{
    const Design design = readDesign(designFile);
    if (!design.device)
        throw Error(fmt::format("{}: the design names no device, so that nothing is known of its static power",
                                design.source.at("device")));
    const Estimate own = zelm::host::estimate(design); // tells what is wrong with the design itself
    Fit result;
    result.design = design.name;
    result.part = design.device->part;
    result.hasBudgets = !own.budgets.empty();
    const std::vector<std::string> parts = wishedParts(wish);
    inOrder<FitPart>(
        parts.size(), wish.jobs, [&] { return [&](std::size_t index) { return fitPart(design, parts[index]); }; },
        [&](FitPart part) {
            part.isDesigns = isDesignsPart(*design.device, part.part);
            std::erase_if(part.notes, [&](const std::string& note) {
                return std::find(own.warnings.begin(), own.warnings.end(), note) != own.warnings.end();
            });
            result.parts.push_back(std::move(part));
            return true;
        });
    std::stable_sort(result.parts.begin(), result.parts.end(), isBetter);
    return result;
}

} // namespace zelm::host
