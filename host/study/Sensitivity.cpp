#include "host/study/Sensitivity.h"

#include "host/base/Error.h"
#include "host/base/InOrder.h"
#include "host/base/Json.h"
#include "host/base/Text.h"
#include "host/base/Units.h"
#include "host/blocks/Legal.h"
#include "host/design/Include.h"
#include "host/design/Limits.h"
#include "host/design/Parameters.h"
#include "host/design/Place.h"
#include "host/estimate/RunningDesign.h"
#include "host/study/Varied.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace zelm::host {

namespace {

// An input that can be moved.
struct Knob {
    enum class Kind { input, rail, ambient, junction, cooling, parameter };

    Kind kind = Kind::input;
    std::string path;
    std::string unit;
    std::variant<double, std::string> value;
    std::string origin;
    std::size_t group = 0;              // of an input
    const Block* block = nullptr;       // the same
    const ZelmCellInfo* cell = nullptr; // the same
    std::string name;                   // of a rail

    bool isWord() const
    {
        return value.index() == 1;
    }
    bool isWhole() const
    {
        return cell && cell->type == ZelmCellInfo::Type::integer;
    }
};

// ---- What can be moved ----

double numberOf(const Value& value)
{
    if (const int* whole = std::get_if<int>(&value))
        return *whole;
    return shortest(std::get<float>(value));
}

void addInputs(const Estimate& estimate, std::vector<Knob>& knobs)
{
    std::size_t next = 0; // result of the estimate, in which each group has one for each of its blocks
    for (std::size_t g = 0; g < estimate.design.groups.size(); ++g) {
        std::set<std::string_view> known;
        for (const Block* block : inputBlocks(*estimate.design.groups[g].block)) {
            for (const InputValue& input : estimate.groups[next].inputs) {
                const bool moves = input.origin == Origin::design || input.origin == Origin::byDefault;
                if (!known.insert(input.cell).second || !moves)
                    continue;
                Knob knob{Knob::Kind::input,
                          fmt::format("{}.inputs.{}", groupPath(estimate.design, g), input.cell),
                          std::string(input.unit),
                          0.0,
                          std::string(originWord(input.origin)),
                          g,
                          block,
                          &block->cell(input.cell),
                          ""};
                if (const auto* word = std::get_if<std::string>(&input.value))
                    knob.value = *word;
                else
                    knob.value = numberOf(input.value);
                knobs.push_back(std::move(knob));
            }
            ++next;
        }
    }
}

void addRailsAndEnvironment(const Estimate& estimate, const Json& root, std::vector<Knob>& knobs)
{
    const auto add = [&](Knob::Kind kind, const std::string& path, const char* unit, double value, const char* origin,
                         const std::string& name = "") {
        knobs.push_back({kind, path, unit, value, origin, 0, nullptr, nullptr, name});
    };
    const Design& design = estimate.design;
    for (const RailResult& rail : estimate.side().rails) {
        const auto set = design.rails.find(rail.name);
        const bool isSet = set != design.rails.end();
        const double volts = isSet ? shortest(set->second) : shortest(static_cast<float>(rail.volts));
        if (volts > 0.0)
            add(Knob::Kind::rail, "rails." + rail.name, "V", volts,
                isSet           ? "design"
                : design.device ? "device"
                                : "default",
                rail.name);
    }
    const Environment& environment = design.environment;
    if (environment.ambient)
        add(Knob::Kind::ambient, "environment.ambientTemperature", "C", *environment.ambient, "design");
    if (environment.junction)
        add(Knob::Kind::junction, "environment.junctionTemperature", "C", *environment.junction, "design");
    if (!environment.cooling.empty() && design.stages.empty())
        add(Knob::Kind::cooling,
            root["environment"].contains("thetaJA") ? "environment.thetaJA" : "environment.cooling[0].thetaJA", "C/W",
            environment.cooling.front().thetaJA, "design");
}

// Those that are numbers themselves: the others follow them.
void addParameters(const Json& root, std::vector<Knob>& knobs)
{
    const auto parameters = root.find("parameters");
    if (parameters == root.end())
        return;
    for (const auto& [name, value] : parameters->items()) {
        Knob knob{Knob::Kind::parameter, "parameters." + name, "", 0.0, "design", 0, nullptr, nullptr, name};
        const auto* text = value.get_ptr<const std::string*>();
        if (isDistribution(value)) {
            const Distribution all = distributionOf(value, std::nullopt);
            if (all.takesWords())
                continue;
            knob.unit = all.unit;
            knob.value = std::get<double>(all.centre());
        } else if (value.is_number()) {
            knob.value = value.get<double>();
        } else if (text && !isExpression(*text) && !writtenUnit(value).empty()) {
            knob.unit = writtenUnit(value);
            knob.value = inUnit(*writtenQuantity(*text), knob.unit);
        } else {
            continue;
        }
        knobs.push_back(std::move(knob));
    }
}

// ---- Where to ----

struct Domain {
    double lowest = -std::numeric_limits<double>::infinity();
    double highest = std::numeric_limits<double>::infinity();
    std::vector<double> only; // in ascending order; empty: any number
};

Domain domainOf(const Knob& knob, double value)
{
    Domain domain;
    switch (knob.kind) {
    case Knob::Kind::input:
        break;
    case Knob::Kind::rail:
        return {0.0, kMostVolts, {}};
    case Knob::Kind::ambient:
    case Knob::Kind::junction:
        return {kColdest, kHottest, {}};
    case Knob::Kind::cooling:
        return {0.0, kMostThetaJA, {}};
    case Knob::Kind::parameter:
        return domain;
    }
    const zelm::Legal& legal = knob.cell->legal;
    domain.lowest = legal.lowest;
    domain.highest = value <= legal.usualHighest ? std::min(legal.highest, legal.usualHighest) : legal.highest;
    for (const int number : legalNumbers(*knob.cell))
        domain.only.push_back(number);
    if (legal.kind != zelm::Legal::Kind::keys)
        return domain;
    for (const std::string& word : legalWords(*knob.block, *knob.cell)) {
        if (const std::optional<double> number = plainNumber(word))
            domain.only.push_back(*number);
    }
    std::sort(domain.only.begin(), domain.only.end());
    return domain;
}

// Where a number gets that moves by a share of itself: in its domain, and at least to the next whole or legal number.
double movedBy(const Knob& knob, double share)
{
    const double value = std::get<double>(knob.value);
    const double wanted = value + std::fabs(value) * share;
    const Domain domain = domainOf(knob, value);
    if (value == 0.0)
        return value;
    if (!domain.only.empty()) {
        double best = value;
        for (const double number : domain.only) {
            const bool isThere = share > 0.0 ? number > value : number < value;
            if (isThere && (best == value || std::fabs(number - wanted) < std::fabs(best - wanted)))
                best = number;
        }
        return best;
    }
    if (!knob.isWhole())
        return std::clamp(wanted, std::min(domain.lowest, value), std::max(domain.highest, value));
    const double whole =
        share > 0.0 ? std::max(std::round(wanted), value + 1.0) : std::min(std::round(wanted), value - 1.0);
    return whole < domain.lowest || whole > domain.highest ? value : whole;
}

// ---- Moving ----

// A design at work in which one knob at a time stands otherwise.
class MovedDesign {
public:
    MovedDesign(const Json& root, const JsonSource& source, Design design, NamedQuantity quantity)
        : m_root(&root), m_source(&source), m_base(design), m_running(std::move(design)),
          m_quantity(std::move(quantity))
    {
    }

    /// NaN if the device runs away; an Error if the formulas refuse the value.
    double at(const Knob& knob, const std::variant<double, std::string>& value)
    {
        if (m_moved && (m_moved->kind != knob.kind || m_moved->group != knob.group))
            restore();
        m_moved = &knob;
        move(knob, value);
        return valueOf(m_quantity, m_running.estimate());
    }

private:
    void move(const Knob& knob, const std::variant<double, std::string>& value)
    {
        Environment environment = m_base.environment;
        switch (knob.kind) {
        case Knob::Kind::input:
            m_running.change(knob.group, withInput(knob, value));
            return;
        case Knob::Kind::rail: {
            Design design = m_base;
            design.rails[knob.name] = static_cast<float>(std::get<double>(value));
            m_running.change(std::move(design));
            return;
        }
        case Knob::Kind::ambient:
            environment.ambient = std::get<double>(value);
            break;
        case Knob::Kind::junction:
            environment.junction = std::get<double>(value);
            break;
        case Knob::Kind::cooling:
            environment.cooling.front().thetaJA = std::get<double>(value);
            break;
        case Knob::Kind::parameter:
            Json root = *m_root;
            root["parameters"][knob.name] = withUnit(plainJson(std::get<double>(value)), knob.unit);
            m_running.change(readDesign(root, *m_source));
            return;
        }
        m_running.change(std::move(environment));
    }

    void restore()
    {
        switch (m_moved->kind) {
        case Knob::Kind::input:
            m_running.change(m_moved->group, m_base.groups[m_moved->group]);
            return;
        case Knob::Kind::rail:
        case Knob::Kind::parameter:
            m_running.change(Design(m_base));
            return;
        default:
            m_running.change(Environment(m_base.environment));
        }
    }

    Group withInput(const Knob& knob, const std::variant<double, std::string>& value) const
    {
        Value typed;
        if (const auto* word = std::get_if<std::string>(&value))
            typed = *word;
        else if (knob.isWhole())
            typed = static_cast<int>(std::get<double>(value));
        else
            typed = static_cast<float>(std::get<double>(value));
        if (const std::optional<std::string> why = whyIllegal(*knob.block, *knob.cell, typed))
            throw Error(*why);
        Group group = m_base.groups[knob.group];
        const auto set = std::find_if(group.inputs.begin(), group.inputs.end(),
                                      [&](const auto& input) { return input.first == knob.cell->name; });
        if (set == group.inputs.end())
            group.inputs.emplace_back(knob.cell->name, std::move(typed));
        else
            set->second = std::move(typed);
        return group;
    }

    const Json* m_root;
    const JsonSource* m_source;
    Design m_base;
    RunningDesign m_running;
    NamedQuantity m_quantity;
    const Knob* m_moved = nullptr;
};

Move moved(MovedDesign& design, const Knob& knob, std::variant<double, std::string> to, double nominal)
{
    Move move{std::move(to), std::nan(""), ""};
    try {
        move.change = move.to == knob.value ? 0.0 : design.at(knob, move.to) - nominal;
        if (std::isnan(move.change))
            move.why = "thermal runaway";
    } catch (const Error& error) {
        move.why = error.what();
    }
    return move;
}

std::optional<double> slope(const Move& low, const Move& high, double value, double nominal)
{
    const double width = std::get<double>(high.to) - std::get<double>(low.to);
    const double elasticity = (high.change - low.change) / width * value / nominal;
    return std::isfinite(elasticity) ? std::optional(elasticity) : std::nullopt;
}

void moveNumber(MovedDesign& design, const Knob& knob, double nominal, double span, SensitivityRow& row)
{
    constexpr double near = 0.01; // far enough for single precision, near enough for what bends
    const double value = std::get<double>(knob.value);
    row.minus = moved(design, knob, movedBy(knob, -span), nominal);
    row.plus = moved(design, knob, movedBy(knob, span), nominal);
    row.overSpan = slope(row.minus, row.plus, value, nominal);
    if (row.minus.change == 0.0 && row.plus.change == 0.0) {
        row.elasticity = row.overSpan;
        return;
    }
    row.elasticity = slope(moved(design, knob, movedBy(knob, -std::min(near, span)), nominal),
                           moved(design, knob, movedBy(knob, std::min(near, span)), nominal), value, nominal);
    constexpr double absolute = 0.001;
    constexpr double relative = 0.05;
    row.agrees = row.elasticity && row.overSpan &&
                 std::fabs(*row.elasticity - *row.overSpan) <= absolute + relative * std::fabs(*row.elasticity);
}

void moveWord(MovedDesign& design, const Knob& knob, double nominal, SensitivityRow& row)
{
    row.minus = row.plus = {knob.value, 0.0, ""};
    for (const std::string& word : legalWords(*knob.block, *knob.cell)) {
        if (word == std::get<std::string>(knob.value))
            continue;
        const Move& move = row.words.emplace_back(moved(design, knob, word, nominal));
        if (move.change < row.minus.change)
            row.minus = move;
        else if (move.change > row.plus.change)
            row.plus = move;
    }
}

SensitivityRow rowOf(MovedDesign& design, const Knob& knob, double nominal, double span)
{
    SensitivityRow row;
    row.path = knob.path;
    row.unit = knob.unit;
    row.value = knob.value;
    row.origin = knob.origin;
    if (knob.isWord())
        moveWord(design, knob, nominal, row);
    else
        moveNumber(design, knob, nominal, span, row);
    return row;
}

// Those that nobody set, and that could change the answer by more than a thousandth.
std::vector<std::size_t> findOutNext(const Sensitivity& all)
{
    constexpr double counts = 1e-3;
    constexpr std::size_t most = 10;
    std::vector<std::size_t> next;
    for (std::size_t i = 0; i < all.rows.size() && next.size() < most; ++i) {
        if (all.rows[i].origin == "default" && all.rows[i].largest() > counts * std::fabs(all.nominal))
            next.push_back(i);
    }
    return next;
}

} // namespace

double SensitivityRow::largest() const
{
    const auto size = [](const Move& move) { return std::isnan(move.change) ? 0.0 : std::fabs(move.change); };
    return std::max(size(minus), size(plus));
}

Sensitivity sensitivity(const std::string& designFile, const SensitivityWish& wish)
{
    JsonSource source;
    Json root = readDesignTree(designFile, source);
    if (root.is_object())
        root.erase("modes"); // which the quantities don't depend on
    const Design design = readDesign(root, source);
    const Estimate estimate = zelm::host::estimate(design);
    Sensitivity all;
    all.design = design.name;
    all.span = wish.span;
    all.quantity = namedQuantity(wish.of, estimate);
    all.nominal = valueOf(all.quantity, estimate);
    if (std::isnan(all.nominal))
        throw Error(fmt::format("{}: there is none: {}", all.quantity.name(),
                                estimate.side().settles() ? "it isn't known" : "the device runs away"));
    std::vector<Knob> knobs;
    addInputs(estimate, knobs);
    addRailsAndEnvironment(estimate, root, knobs);
    addParameters(root, knobs);
    all.atZero = static_cast<std::size_t>(std::count_if(knobs.begin(), knobs.end(), [](const Knob& knob) {
        return !knob.isWord() && std::get<double>(knob.value) == 0.0;
    }));

    inOrder<SensitivityRow>(
        knobs.size(), wish.jobs,
        [&] {
            return [&, moving = std::make_unique<MovedDesign>(root, source, design, all.quantity)](std::size_t index) {
                return rowOf(*moving, knobs[index], all.nominal, wish.span);
            };
        },
        [&](SensitivityRow row) {
            all.rows.push_back(std::move(row));
            return true;
        });
    std::stable_sort(all.rows.begin(), all.rows.end(),
                     [](const SensitivityRow& a, const SensitivityRow& b) { return a.largest() > b.largest(); });
    all.findOutNext = findOutNext(all);
    return all;
}

} // namespace zelm::host
