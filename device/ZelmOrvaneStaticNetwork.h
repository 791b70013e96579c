#pragma once

// The network of the static power: a row for each rail, leaking site and total with all that sets it apart. The model's
// formulas take a row. A row holds the cell of each metric that it has under the metric's name.

#include "device/ZelmOrvaneStaticParams.h"
#include "framework/ZelmSheet.h"

#include <array>
#include <cstddef>

namespace zelm::staticpower {

using IntCell = ZelmOrvaneStaticCells::IntEnum;
using FloatCell = ZelmOrvaneStaticCells::FloatEnum;
using StringCell = ZelmOrvaneStaticCells::StringEnum;
using enum ZelmOrvaneStaticCells::IntEnum;
using enum ZelmOrvaneStaticCells::FloatEnum;
using enum ZelmOrvaneStaticCells::StringEnum;

/// The cells that a sum adds up, in its order.
struct Addends {
    std::array<FloatCell, 24> cells;
    std::size_t count;

    constexpr const FloatCell* begin() const
    {
        return cells.data();
    }
    constexpr const FloatCell* end() const
    {
        return cells.data() + count;
    }
};

template <class... Cells>
constexpr Addends sum(Cells... cells)
{
    return {{cells...}, sizeof...(cells)};
}

/// A supply rail.
struct Rail {
    Key key; ///< in the tables
    FloatCell volts;
    StringCell rangeKey;
    FloatCell validMin;
    FloatCell validMax;
    FloatCell railCurrent;
    FloatCell railPower;
    FloatCell railPowerupCurrent;
    Addends leaks;
    Addends powersUp;
    bool powerupNeedsVolts; ///< at 0 V no power-up current
};

/// What a site draws beside its leakage while the device powers up.
enum class Inrush {
    none,    ///< nothing, without a look into the table
    tabled,  ///< the table's row
    perQuad, ///< the table's row for each quad in use
};

/// When a site has a power-up current; none has one unless the process is MAX.
enum class Gate {
    anyUnits, ///< its multiplier is above 0
    anyUse,   ///< its count is not 0
    none,     ///< always
    leaking,  ///< always, but with the inrush only if it leaks at 25 degrees
};

/// What leaks on one rail: the device itself (curve under its name) or a kind of resource (curve shared by all
/// devices).
struct Site {
    Key curveKey;   ///< of VT_COEFFICIENT and VOLTAGE_SCALING; empty: the device's name
    Key binningKey; ///< of BINNING_FACTORS; empty: the device's name
    Key railKey;
    FloatCell volts; ///< that the leakage scales with

    FloatCell binning; ///< the curve's cells follow it
    FloatCell termA = cellBehind(binning, 1);
    FloatCell termB = cellBehind(binning, 2);
    FloatCell termC = cellBehind(binning, 3);
    FloatCell termConst = cellBehind(binning, 4);
    FloatCell termD = cellBehind(binning, 5);
    FloatCell termE = cellBehind(binning, 6);
    FloatCell leakage = cellBehind(binning, 7);
    FloatCell leakageAt25 = cellBehind(binning, 8);

    FloatCell voltageC1;
    FloatCell voltageC2 = cellBehind(voltageC1, 1);
    FloatCell voltageScaling;
    FloatCell siteCurrent;

    FloatCell share = LastFloat; ///< the device's multiplier
    IntCell units = LastInt;     ///< a resource's multiplier, taken from count
    IntCell count = LastInt;

    FloatCell totalPowerFactor = LastFloat; ///< with the two below, for sites that have a power-up current
    FloatCell powerupConst = LastFloat;
    FloatCell powerupCurrent = LastFloat;

    Inrush inrush = Inrush::tabled;
    Gate gate = Gate::anyUnits;
    bool countedInFours = false; ///< one unit serves four quads
    bool needsHarlIo = false;    ///< leaks only with HAS_HARL_IO
    bool followsCore = false;    ///< scales with VCCINT too
};

/// An output that repeats another cell.
struct Copy {
    FloatCell copiedCurrent;
    FloatCell from;
};

/// A resource's share of a rail's power.
struct Share {
    FloatCell sharePower;
    FloatCell volts;
    FloatCell current;
};

/// A sum of rails. Sums start with -0, which leaves every value as it is, or with +0, which makes +0 of -0.
struct Total {
    FloatCell total;
    float start;
    Addends addends;
};

// clang-format off

// ---- Rails ----

#define RAIL(row, cells, key_, needsVolts, powersUp_, leaks_)                                                        \
    inline constexpr Rail row{.key = #key_,                                                                          \
                              .volts = cells,                                                                        \
                              .rangeKey = cells##_VR_STRING,                                                         \
                              .validMin = cells##_VALID_MIN,                                                         \
                              .validMax = cells##_VALID_MAX,                                                         \
                              .railCurrent = cells##_STATIC_CURRENT,                                                 \
                              .railPower = cells##_STATIC_POWER,                                                     \
                              .railPowerupCurrent = cells##_POWERUP_CURRENT,                                         \
                              .leaks = leaks_,                                                                       \
                              .powersUp = powersUp_,                                                                 \
                              .powerupNeedsVolts = needsVolts};

// VCCINT also carries the rails VCCINTWIST and VCCME. The LORVP rails have no table rows of their own but share the LORV
// rails'. Which rails check their voltage while powering up follows the characterisation workbook.
//   row             cells          key            needs volts powers up                                     leaks
RAIL(kVccint,        VCCINT,        VCCINT,        false,      sum(COMMON_VCCINT_POWERUP_CURRENT, VCCINTWIST_POWERUP_CURRENT, VCCME_POWERUP_CURRENT),
                                                               sum(COMMON_VCCINT_STATIC_CURRENT, BRAM_ACTIVE_VCCINT_STATIC_CURRENT, BRAM_SLEEP_VCCINT_STATIC_CURRENT,
                                                                   PLAM_ACTIVE_VCCINT_STATIC_CURRENT, PLAM_SLEEP_VCCINT_STATIC_CURRENT, LORV_VCCINT_STATIC_CURRENT,
                                                                   LORVP_VCCINT_STATIC_CURRENT, SARN_VCCINT_STATIC_CURRENT, VCCINTWIST_STATIC_CURRENT,
                                                                   VCCME_STATIC_CURRENT))
RAIL(kVccram,        VCCRAM,        VCCRAM,        false,      sum(COMMON_VCCRAM_POWERUP_CURRENT),
                                                               sum(COMMON_VCCRAM_STATIC_CURRENT, BRAM_SLEEP_VCCRAM_STATIC_CURRENT, BRAM_ACTIVE_VCCRAM_STATIC_CURRENT,
                                                                   PLAM_SLEEP_VCCRAM_STATIC_CURRENT, PLAM_ACTIVE_VCCRAM_STATIC_CURRENT))
RAIL(kVccsoc,        VCCSOC,        VCCSOC,        false,      sum(COMMON_VCCSOC_POWERUP_CURRENT),           sum(COMMON_VCCSOC_STATIC_CURRENT))
RAIL(kVccintio,      VCCINTIO,      VCCINTIO,      false,      sum(COMMON_VCCINTIO_POWERUP_CURRENT),         sum(COMMON_VCCINTIO_STATIC_CURRENT))
RAIL(kVccaux,        VCCAUX,        VCCAUX,        false,      sum(COMMON_VCCAUX_POWERUP_CURRENT),           sum(COMMON_VCCAUX_STATIC_CURRENT))
RAIL(kVccharl,       VCCHARL,       VCCHARL,       false,      sum(COMMON_VCCHARL_POWERUP_CURRENT),          sum(COMMON_VCCHARL_STATIC_CURRENT))
RAIL(kVccauxharl,    VCCAUXHARL,    VCCAUXHARL,    false,      sum(COMMON_VCCAUXHARL_POWERUP_CURRENT),       sum(COMMON_VCCAUXHARL_STATIC_CURRENT))
RAIL(kVccauxsmon,    VCCAUXSMON,    VCCAUXSMON,    false,      sum(COMMON_VCCAUXSMON_POWERUP_CURRENT),       sum(COMMON_VCCAUXSMON_STATIC_CURRENT))
RAIL(kVccpslp,       VCCPSLP,       VCCPSLP,       false,      sum(COMMON_VCCPSLP_POWERUP_CURRENT),
                                                               sum(COMMON_VCCPSLP_STATIC_CURRENT, RPU_ACTIVE_VCCPSLP_STATIC_CURRENT, OCM_ACTIVE_VCCPSLP_STATIC_CURRENT,
                                                                   TCM_ACTIVE_VCCPSLP_STATIC_CURRENT, OCM2_VCCPSLP_STATIC_CURRENT))
RAIL(kVccpsfp,       VCCPSFP,       VCCPSFP,       false,      sum(COMMON_VCCPSFP_POWERUP_CURRENT),
                                                               sum(COMMON_VCCPSFP_STATIC_CURRENT, CPU_ACTIVE_VCCPSFP_STATIC_CURRENT, L2_ACTIVE_VCCPSFP_STATIC_CURRENT))
RAIL(kVccoharlio0,   VCCOHARLIO0,   VCCOHARLIO0,   false,      sum(COMMON_VCCOHARLIO0_POWERUP_CURRENT),      sum(COMMON_VCCOHARLIO0_STATIC_CURRENT))
RAIL(kVccoharlio1,   VCCOHARLIO1,   VCCOHARLIO1,   false,      sum(COMMON_VCCOHARLIO1_POWERUP_CURRENT),      sum(COMMON_VCCOHARLIO1_STATIC_CURRENT))
RAIL(kVccoharlio2,   VCCOHARLIO2,   VCCOHARLIO2,   false,      sum(COMMON_VCCOHARLIO2_POWERUP_CURRENT),      sum(COMMON_VCCOHARLIO2_STATIC_CURRENT))
RAIL(kVccofio,       VCCOFIO,       VCCOFIO,       false,      sum(COMMON_VCCOFIO_POWERUP_CURRENT),          sum(COMMON_VCCOFIO_STATIC_CURRENT))
RAIL(kVccintwist,    VCCINTWIST,    VCCINTWIST,    true,       sum(COMMON_VCCINTWIST_POWERUP_CURRENT),       sum(COMMON_VCCINTWIST_STATIC_CURRENT))
RAIL(kVccwist5,      VCCWIST5,      VCCWIST5,      false,      sum(COMMON_VCCWIST5_POWERUP_CURRENT),         sum(COMMON_VCCWIST5_STATIC_CURRENT))
RAIL(kVccme,         VCCME,         VCCME,         false,      sum(COMMON_VCCME_POWERUP_CURRENT),            sum(COMMON_VCCME_STATIC_CURRENT))
RAIL(kVccvcuint,     VCCVCUINT,     VCCVCUINT,     false,      sum(COMMON_VCCVCUINT_POWERUP_CURRENT),        sum(COMMON_VCCVCUINT_STATIC_CURRENT))
RAIL(kVcciohbm,      VCCIOHBM,      VCCIOHBM,      false,      sum(COMMON_VCCIOHBM_POWERUP_CURRENT),         sum(COMMON_VCCIOHBM_STATIC_CURRENT))
RAIL(kVcchbm,        VCCHBM,        VCCHBM,        false,      sum(COMMON_VCCHBM_POWERUP_CURRENT),           sum(COMMON_VCCHBM_STATIC_CURRENT))
RAIL(kVccauxhbm,     VCCAUXHBM,     VCCAUXHBM,     false,      sum(COMMON_VCCAUXHBM_POWERUP_CURRENT),        sum(COMMON_VCCAUXHBM_STATIC_CURRENT))
RAIL(kVccbatt,       VCCBATT,       VCCBATT,       true,       sum(COMMON_VCCBATT_POWERUP_CURRENT),          sum(COMMON_VCCBATT_STATIC_CURRENT))
RAIL(kVccfuse,       VCCFUSE,       VCCFUSE,       true,       sum(COMMON_VCCFUSE_POWERUP_CURRENT),          sum(COMMON_VCCFUSE_STATIC_CURRENT))
RAIL(kVcco10,        VCCO10,        VCCO10,        true,       sum(SELVBANK_VCCO10_POWERUP_CURRENT),         sum(SELVBANK_VCCO10_STATIC_CURRENT))
RAIL(kVcco11,        VCCO11,        VCCO11,        true,       sum(SELVBANK_VCCO11_POWERUP_CURRENT),         sum(SELVBANK_VCCO11_STATIC_CURRENT))
RAIL(kVcco12,        VCCO12,        VCCO12,        true,       sum(SELVBANK_VCCO12_POWERUP_CURRENT),         sum(SELVBANK_VCCO12_STATIC_CURRENT))
RAIL(kVcco135,       VCCO135,       VCCO135,       true,       sum(SELVBANK_VCCO135_POWERUP_CURRENT),        sum(SELVBANK_VCCO135_STATIC_CURRENT))
RAIL(kVcco15,        VCCO15,        VCCO15,        true,       sum(SELVBANK_VCCO15_POWERUP_CURRENT),         sum(SELVBANK_VCCO15_STATIC_CURRENT))
RAIL(kVcco18,        VCCO18,        VCCO18,        true,       sum(NALTBANK_ACTIVE_VCCO18_POWERUP),          sum(NALTBANK_ACTIVE_VCCO18_STATIC))
RAIL(kVcco25,        VCCO25,        VCCO25,        true,       sum(NALTBANK_ACTIVE_VCCO25_POWERUP),          sum(NALTBANK_ACTIVE_VCCO25_STATIC))
RAIL(kVcco33,        VCCO33,        VCCO33,        true,       sum(NALTBANK_ACTIVE_VCCO33_POWERUP),          sum(NALTBANK_ACTIVE_VCCO33_STATIC))
RAIL(kMlorvavcc,     MLORVAVCC,     MLORVAVCC,     true,       sum(LORV_QUAD_MLORVAVCC_POWERUP_CURRENT),     sum(LORV_QUAD_MLORVAVCC_STATIC_CURRENT))
RAIL(kMlorvavtt,     MLORVAVTT,     MLORVAVTT,     true,       sum(LORV_QUAD_MLORVAVTT_POWERUP_CURRENT),     sum(LORV_QUAD_MLORVAVTT_STATIC_CURRENT))
RAIL(kMlorvvccaux,   MLORVVCCAUX,   MLORVVCCAUX,   true,       sum(LORV_QUAD_MLORVVCCAUX_POWERUP_CURRENT),   sum(LORV_QUAD_MLORVVCCAUX_STATIC_CURRENT))
RAIL(kMlorvpavcc,    MLORVPAVCC,    MLORVAVCC,     true,       sum(LORVP_QUAD_MLORVPAVCC_POWERUP_CURRENT),   sum(LORVP_QUAD_MLORVPAVCC_STATIC_CURRENT))
RAIL(kMlorvpavtt,    MLORVPAVTT,    MLORVAVTT,     true,       sum(LORVP_QUAD_MLORVPAVTT_POWERUP_CURRENT),   sum(LORVP_QUAD_MLORVPAVTT_STATIC_CURRENT))
RAIL(kMlorvpvccaux,  MLORVPVCCAUX,  MLORVVCCAUX,   true,       sum(LORVP_QUAD_MLORVPVCCAUX_POWERUP_CURRENT), sum(LORVP_QUAD_MLORVPVCCAUX_STATIC_CURRENT))
RAIL(kMsarnavcc,     MSARNAVCC,     MSARNAVCC,     true,       sum(SARN_QUAD_MSARNAVCC_POWERUP_CURRENT),     sum(SARN_QUAD_MSARNAVCC_STATIC_CURRENT))
RAIL(kMsarnavtt,     MSARNAVTT,     MSARNAVTT,     true,       sum(SARN_QUAD_MSARNAVTT_POWERUP_CURRENT),     sum(SARN_QUAD_MSARNAVTT_STATIC_CURRENT))
RAIL(kMsarnvccaux,   MSARNVCCAUX,   MSARNVCCAUX,   true,       sum(SARN_QUAD_MSARNVCCAUX_POWERUP_CURRENT),   sum(SARN_QUAD_MSARNVCCAUX_STATIC_CURRENT))
RAIL(kMsarnavttrcal, MSARNAVTTRCAL, MSARNAVTTRCAL, true,       sum(SARN_QUAD_MSARNAVTTRCAL_POWERUP_CURRENT), sum(SARN_QUAD_MSARNAVTTRCAL_STATIC_CURRENT))
RAIL(kVccintgt,      VCCINTGT,      VCCINTGT,      true,       sum(SARN_QUAD_VCCINTGT_POWERUP_CURRENT),      sum(SARN_QUAD_VCCINTGT_STATIC_CURRENT))
RAIL(kVccpsgta,      VCCPSGTA,      VCCPSGTA,      false,      sum(COMMON_VCCPSGTA_POWERUP_CURRENT),         sum(COMMON_VCCPSGTA_STATIC_CURRENT))
RAIL(kVttpsgta,      VTTPSGTA,      VTTPSGTA,      false,      sum(COMMON_VTTPSGTA_POWERUP_CURRENT),         sum(COMMON_VTTPSGTA_STATIC_CURRENT))
RAIL(kVauxpsgta,     VAUXPSGTA,     VAUXPSGTA,     false,      sum(COMMON_VAUXPSGTA_POWERUP_CURRENT),        sum(COMMON_VAUXPSGTA_STATIC_CURRENT))
RAIL(kVcchsams,      VCCHSAMS,      VCCHSAMS,      false,      sum(COMMON_VCCHSAMS_POWERUP_CURRENT),
                                                               sum(COMMON_VCCHSAMS_STATIC_CURRENT, ADC_CORE_VCCHSAMS_STATIC_CURRENT, DAC_CORE_VCCHSAMS_STATIC_CURRENT))
RAIL(kAdcavcc,       ADCAVCC,       ADCAVCC,       false,      sum(COMMON_ADCAVCC_POWERUP_CURRENT),
                                                               sum(COMMON_ADCAVCC_STATIC_CURRENT, ADC_CORE_ADCAVCC_STATIC_CURRENT))
RAIL(kAdcavccaux,    ADCAVCCAUX,    ADCAVCCAUX,    false,      sum(COMMON_ADCAVCCAUX_POWERUP_CURRENT),
                                                               sum(COMMON_ADCAVCCAUX_STATIC_CURRENT, ADC_CORE_ADCAVCCAUX_STATIC_CURRENT))
RAIL(kDacavcc,       DACAVCC,       DACAVCC,       false,      sum(COMMON_DACAVCC_POWERUP_CURRENT),
                                                               sum(COMMON_DACAVCC_STATIC_CURRENT, DAC_CORE_DACAVCC_STATIC_CURRENT))
RAIL(kDacavccaux,    DACAVCCAUX,    DACAVCCAUX,    false,      sum(COMMON_DACAVCCAUX_POWERUP_CURRENT),
                                                               sum(COMMON_DACAVCCAUX_STATIC_CURRENT, DAC_CORE_DACAVCCAUX_STATIC_CURRENT))
RAIL(kDacavtt,       DACAVTT,       DACAVTT,       false,      sum(COMMON_DACAVTT_POWERUP_CURRENT),
                                                               sum(COMMON_DACAVTT_STATIC_CURRENT, DAC_CORE_DACAVTT_STATIC_CURRENT))

#undef RAIL

// ---- Sites ----

// The device on each rail that it leaks on. The last arguments set properties apart from their defaults.
#define DEVICE(row, rail, ...)                                                                                       \
    inline constexpr Site row{.curveKey = {},                                                                        \
                              .binningKey = {},                                                                      \
                              .railKey = #rail,                                                                      \
                              .volts = rail,                                                                         \
                              .binning = COMMON_##rail##_VOLT_BINNING,                                               \
                              .voltageC1 = COMMON_##rail##_V_C1,                                                     \
                              .voltageScaling = COMMON_##rail##_V_SCALING,                                           \
                              .siteCurrent = COMMON_##rail##_STATIC_CURRENT,                                         \
                              .share = COMMON_##rail##_MULTIPLIER,                                                   \
                              .totalPowerFactor = COMMON_##rail##_TOTAL_POWER_FACTOR,                                \
                              .powerupConst = COMMON_##rail##_POWERUP_CONST,                                         \
                              .powerupCurrent = COMMON_##rail##_POWERUP_CURRENT __VA_OPT__(,) __VA_ARGS__};
//     row                 rail
DEVICE(kCommonVccint,      VCCINT)
DEVICE(kCommonVccram,      VCCRAM)
DEVICE(kCommonVccsoc,      VCCSOC)
DEVICE(kCommonVccintio,    VCCINTIO)
DEVICE(kCommonVccaux,      VCCAUX, .followsCore = true)
DEVICE(kCommonVccharl,     VCCHARL)
DEVICE(kCommonVccauxharl,  VCCAUXHARL)
DEVICE(kCommonVccauxsmon,  VCCAUXSMON)
DEVICE(kCommonVccpslp,     VCCPSLP)
DEVICE(kCommonVccpsfp,     VCCPSFP)
DEVICE(kCommonVccoharlio0, VCCOHARLIO0, .needsHarlIo = true)
DEVICE(kCommonVccoharlio1, VCCOHARLIO1, .needsHarlIo = true)
DEVICE(kCommonVccoharlio2, VCCOHARLIO2)
DEVICE(kCommonVccofio,     VCCOFIO)
DEVICE(kCommonVccintwist,  VCCINTWIST, .inrush = Inrush::none, .gate = Gate::none)
DEVICE(kCommonVccwist5,    VCCWIST5)
DEVICE(kCommonVccme,       VCCME)
DEVICE(kCommonVccvcuint,   VCCVCUINT)
DEVICE(kCommonVcciohbm,    VCCIOHBM)
DEVICE(kCommonVcchbm,      VCCHBM)
DEVICE(kCommonVccauxhbm,   VCCAUXHBM)
DEVICE(kCommonVccbatt,     VCCBATT, .gate = Gate::leaking)
DEVICE(kCommonVccfuse,     VCCFUSE, .gate = Gate::leaking)
DEVICE(kCommonVccpsgta,    VCCPSGTA)
DEVICE(kCommonVttpsgta,    VTTPSGTA)
DEVICE(kCommonVauxpsgta,   VAUXPSGTA)
DEVICE(kCommonVcchsams,    VCCHSAMS)
DEVICE(kCommonAdcavcc,     ADCAVCC)
DEVICE(kCommonAdcavccaux,  ADCAVCCAUX)
DEVICE(kCommonDacavcc,     DACAVCC)
DEVICE(kCommonDacavccaux,  DACAVCCAUX)
DEVICE(kCommonDacavtt,     DACAVTT)
#undef DEVICE

// Resources without a power-up current.
#define RESOURCE(row, cells, rail, curveKey_, binningKey_, count_, leaks, ...)                                       \
    inline constexpr Site row{.curveKey = curveKey_,                                                                 \
                              .binningKey = binningKey_,                                                             \
                              .railKey = #rail,                                                                      \
                              .volts = rail,                                                                         \
                              .binning = cells##_VOLT_BINNING,                                                       \
                              .voltageC1 = cells##_V_C1,                                                             \
                              .voltageScaling = cells##_V_SCALING,                                                   \
                              .siteCurrent = leaks,                                                                  \
                              .units = cells##_MULTIPLIER,                                                           \
                              .count = count_ __VA_OPT__(,) __VA_ARGS__};
//       row                       cells                       rail        curve key                            binning key            count                   leaks
RESOURCE(kBramActiveVccint,        BRAM_ACTIVE_VCCINT,         VCCINT,     "BRAM_CORE_ACTIVE",                  "BRAM_CORE",           USED_BRAMS_ACTIVE,      BRAM_ACTIVE_VCCINT_STATIC_CURRENT)
RESOURCE(kBramActiveVccram,        BRAM_ACTIVE_VCCRAM,         VCCRAM,     "BRAM_CORE_ACTIVE",                  "BRAM_CORE",           USED_BRAMS_ACTIVE,      BRAM_ACTIVE_VCCRAM_STATIC_CURRENT)
RESOURCE(kBramSleepVccram,         BRAM_SLEEP_VCCRAM,          VCCRAM,     "BRAM_CORE_SLEEP",                   "BRAM_CORE",           USED_BRAMS_SLEEP,       BRAM_SLEEP_VCCRAM_STATIC_CURRENT)
RESOURCE(kBramSleepVccint,         BRAM_SLEEP_VCCINT,          VCCINT,     "BRAM_CORE_SLEEP",                   "BRAM_CORE",           USED_BRAMS_SLEEP,       BRAM_SLEEP_VCCINT_STATIC_CURRENT)
RESOURCE(kPlamActiveVccram,        PLAM_ACTIVE_VCCRAM,         VCCRAM,     "PLAM_CORE_ACTIVE",                  "PLAM_CORE",           USED_PLAMS_ACTIVE,      PLAM_ACTIVE_VCCRAM_STATIC_CURRENT)
RESOURCE(kPlamActiveVccint,        PLAM_ACTIVE_VCCINT,         VCCINT,     "PLAM_CORE_ACTIVE",                  "PLAM_CORE",           USED_PLAMS_ACTIVE,      PLAM_ACTIVE_VCCINT_STATIC_CURRENT)
RESOURCE(kPlamSleepVccram,         PLAM_SLEEP_VCCRAM,          VCCRAM,     "PLAM_CORE_SLEEP",                   "PLAM_CORE",           USED_PLAMS_SLEEP,       PLAM_SLEEP_VCCRAM_STATIC_CURRENT)
RESOURCE(kPlamSleepVccint,         PLAM_SLEEP_VCCINT,          VCCINT,     "PLAM_CORE_SLEEP",                   "PLAM_CORE",           USED_PLAMS_SLEEP,       PLAM_SLEEP_VCCINT_STATIC_CURRENT)
RESOURCE(kRpuActiveVccpslp,        RPU_ACTIVE_VCCPSLP,         VCCPSLP,    "YOND_BASE_CORE_RPU_TIEOFF_WRAPPER", "YOND_BASE_CORE",      USED_PS_LPD_R5,         RPU_ACTIVE_VCCPSLP_STATIC_CURRENT)
RESOURCE(kOcmActiveVccpslp,        OCM_ACTIVE_VCCPSLP,         VCCPSLP,    "YOND_BASE_CORE_OCM_MEMORY",         "YOND_BASE_CORE",      USED_PS_LPD_OCM,        OCM_ACTIVE_VCCPSLP_STATIC_CURRENT)
RESOURCE(kTcmActiveVccpslp,        TCM_ACTIVE_VCCPSLP,         VCCPSLP,    "YOND_BASE_CORE_TCM_MEMORY",         "YOND_BASE_CORE",      USED_PS_LPD_TCM,        TCM_ACTIVE_VCCPSLP_STATIC_CURRENT)
RESOURCE(kCpuActiveVccpsfp,        CPU_ACTIVE_VCCPSFP,         VCCPSFP,    "YOND_BASE_CORE_MAIN_CPU0",          "YOND_BASE_CORE",      USED_PS_FPD_A72,        CPU_ACTIVE_VCCPSFP_STATIC_CURRENT)
RESOURCE(kL2MemoryActiveVccpsfp,   L2_MEMORY_ACTIVE_VCCPSFP,   VCCPSFP,    "YOND_BASE_CORE_L2_MEMORY",          "YOND_BASE_CORE",      USED_PS_FPD_L2CACHE,    L2_ACTIVE_VCCPSFP_STATIC_CURRENT)
RESOURCE(kLorvQuadTopCoreVccint,   LORV_QUAD_TOP_CORE_VCCINT,  VCCINT,     "LORV_QUAD_TOP_CORE",                "LORV_QUAD_TOP_CORE",  AVAILABLE_LORV_QUADS,   LORV_VCCINT_STATIC_CURRENT, .countedInFours = true)
RESOURCE(kSarnQuadVccint,          SARN_QUAD_VCCINT,           VCCINT,     "SARN_QUAD_TOP_CORE",                "SARN_QUAD_TOP_CORE",  AVAILABLE_SARN_QUADS,   SARN_VCCINT_STATIC_CURRENT, .countedInFours = true)
RESOURCE(kLorvpQuadVccint,         LORVP_QUAD_VCCINT,          VCCINT,     "LORVP_QUAD_TOP_CORE",               "LORVP_QUAD_TOP_CORE", USED_LORVP_POWER_QUADS, LORVP_VCCINT_STATIC_CURRENT)
RESOURCE(kAdcCoreActiveVcchsams,   ADC_CORE_ACTIVE_VCCHSAMS,   VCCHSAMS,   "ADC_CORE",                          "ADC_CORE",            USED_ADC_CORE,          ADC_CORE_ACTIVE_VCCHSAMS_STATIC_CURRENT)
RESOURCE(kAdcCoreActiveAdcavcc,    ADC_CORE_ACTIVE_ADCAVCC,    ADCAVCC,    "ADC_CORE",                          "ADC_CORE",            USED_ADC_CORE,          ADC_CORE_ACTIVE_ADCAVCC_STATIC_CURRENT)
RESOURCE(kAdcCoreActiveAdcavccaux, ADC_CORE_ACTIVE_ADCAVCCAUX, ADCAVCCAUX, "ADC_CORE",                          "ADC_CORE",            USED_ADC_CORE,          ADC_CORE_ACTIVE_ADCAVCCAUX_STATIC_CURRENT)
RESOURCE(kDacCoreActiveVcchsams,   DAC_CORE_ACTIVE_VCCHSAMS,   VCCHSAMS,   "DAC_CORE",                          "DAC_CORE",            USED_DAC_CORE,          DAC_CORE_ACTIVE_VCCHSAMS_STATIC_CURRENT)
RESOURCE(kDacCoreActiveDacavcc,    DAC_CORE_ACTIVE_DACAVCC,    DACAVCC,    "DAC_CORE",                          "DAC_CORE",            USED_DAC_CORE,          DAC_CORE_ACTIVE_DACAVCC_STATIC_CURRENT)
RESOURCE(kDacCoreActiveDacavtt,    DAC_CORE_ACTIVE_DACAVTT,    DACAVTT,    "DAC_CORE",                          "DAC_CORE",            USED_DAC_CORE,          DAC_CORE_ACTIVE_DACAVTT_STATIC_CURRENT)
RESOURCE(kDacCoreActiveDacavccaux, DAC_CORE_ACTIVE_DACAVCCAUX, DACAVCCAUX, "DAC_CORE",                          "DAC_CORE",            USED_DAC_CORE,          DAC_CORE_ACTIVE_DACAVCCAUX_STATIC_CURRENT)
#undef RESOURCE

// Resources with a power-up current. The LORVP quads scale with the LORV quads' voltages, on purpose: both are
// characterised on the same supplies.
#define POWERED(row, cells, rail, key, count_, leaks, powersUp, ...)                                                 \
    inline constexpr Site row{.curveKey = key,                                                                       \
                              .binningKey = key,                                                                     \
                              .railKey = #rail,                                                                      \
                              .volts = rail,                                                                         \
                              .binning = cells##_VOLT_BINNING,                                                       \
                              .voltageC1 = cells##_V_C1,                                                             \
                              .voltageScaling = cells##_V_SCALING,                                                   \
                              .siteCurrent = leaks,                                                                  \
                              .units = cells##_MULTIPLIER,                                                           \
                              .count = count_,                                                                       \
                              .totalPowerFactor = cells##_TOTAL_POWER_FACTOR,                                        \
                              .powerupConst = cells##_POWERUP_CONST,                                                 \
                              .powerupCurrent = powersUp __VA_OPT__(,) __VA_ARGS__};
//      row                     cells                    rail           both keys              count                    leaks                                   powers up
POWERED(kSelvbankActiveVcco15,  SELVBANK_ACTIVE_VCCO15,  VCCO15,        "SELVBANK",            USED_VCCO15_SELV_BANKS,  SELVBANK_VCCO15_STATIC_CURRENT,         SELVBANK_VCCO15_POWERUP_CURRENT, .gate = Gate::anyUse)
POWERED(kSelvbankActiveVcco135, SELVBANK_ACTIVE_VCCO135, VCCO135,       "SELVBANK",            USED_VCCO135_SELV_BANKS, SELVBANK_VCCO135_STATIC_CURRENT,        SELVBANK_VCCO135_POWERUP_CURRENT, .gate = Gate::anyUse)
POWERED(kSelvbankActiveVcco12,  SELVBANK_ACTIVE_VCCO12,  VCCO12,        "SELVBANK",            USED_VCCO12_SELV_BANKS,  SELVBANK_VCCO12_STATIC_CURRENT,         SELVBANK_VCCO12_POWERUP_CURRENT, .gate = Gate::anyUse)
POWERED(kSelvbankActiveVcco11,  SELVBANK_ACTIVE_VCCO11,  VCCO11,        "SELVBANK",            USED_VCCO11_SELV_BANKS,  SELVBANK_VCCO11_STATIC_CURRENT,         SELVBANK_VCCO11_POWERUP_CURRENT, .gate = Gate::anyUse)
POWERED(kSelvbankActiveVcco10,  SELVBANK_ACTIVE_VCCO10,  VCCO10,        "SELVBANK",            USED_VCCO10_SELV_BANKS,  SELVBANK_VCCO10_STATIC_CURRENT,         SELVBANK_VCCO10_POWERUP_CURRENT, .gate = Gate::anyUse)
POWERED(kNaltbankActiveVcco33,  NALTBANK_ACTIVE_VCCO33,  VCCO33,        "NALTBANK",            USED_VCCO33_NALT_BANKS,  NALTBANK_ACTIVE_VCCO33_STATIC,          NALTBANK_ACTIVE_VCCO33_POWERUP, .gate = Gate::anyUse)
POWERED(kNaltbankActiveVcco25,  NALTBANK_ACTIVE_VCCO25,  VCCO25,        "NALTBANK",            USED_VCCO25_NALT_BANKS,  NALTBANK_ACTIVE_VCCO25_STATIC,          NALTBANK_ACTIVE_VCCO25_POWERUP, .gate = Gate::anyUse)
POWERED(kNaltbankActiveVcco18,  NALTBANK_ACTIVE_VCCO18,  VCCO18,        "NALTBANK",            USED_VCCO18_NALT_BANKS,  NALTBANK_ACTIVE_VCCO18_STATIC,          NALTBANK_ACTIVE_VCCO18_POWERUP, .gate = Gate::anyUse)
POWERED(kLorvQuadMlorvavcc,     LORV_QUAD_MLORVAVCC,     MLORVAVCC,     "LORV_QUAD_TOP_CORE",  USED_LORV_POWER_QUADS,   LORV_QUAD_MLORVAVCC_STATIC_CURRENT,     LORV_QUAD_MLORVAVCC_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kLorvQuadMlorvavtt,     LORV_QUAD_MLORVAVTT,     MLORVAVTT,     "LORV_QUAD_TOP_CORE",  USED_LORV_POWER_QUADS,   LORV_QUAD_MLORVAVTT_STATIC_CURRENT,     LORV_QUAD_MLORVAVTT_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kLorvQuadMlorvvccaux,   LORV_QUAD_MLORVVCCAUX,   MLORVVCCAUX,   "LORV_QUAD_TOP_CORE",  USED_LORV_POWER_QUADS,   LORV_QUAD_MLORVVCCAUX_STATIC_CURRENT,   LORV_QUAD_MLORVVCCAUX_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kSarnQuadVccintgt,      SARN_QUAD_VCCINTGT,      VCCINTGT,      "SARN_QUAD_TOP_CORE",  USED_SARN_POWER_QUADS,   SARN_QUAD_VCCINTGT_STATIC_CURRENT,      SARN_QUAD_VCCINTGT_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kSarnQuadMsarnavcc,     SARN_QUAD_MSARNAVCC,     MSARNAVCC,     "SARN_QUAD_TOP_CORE",  USED_SARN_POWER_QUADS,   SARN_QUAD_MSARNAVCC_STATIC_CURRENT,     SARN_QUAD_MSARNAVCC_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kSarnQuadMsarnavtt,     SARN_QUAD_MSARNAVTT,     MSARNAVTT,     "SARN_QUAD_TOP_CORE",  USED_SARN_POWER_QUADS,   SARN_QUAD_MSARNAVTT_STATIC_CURRENT,     SARN_QUAD_MSARNAVTT_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kSarnQuadMsarnvccaux,   SARN_QUAD_MSARNVCCAUX,   MSARNVCCAUX,   "SARN_QUAD_TOP_CORE",  USED_SARN_POWER_QUADS,   SARN_QUAD_MSARNVCCAUX_STATIC_CURRENT,   SARN_QUAD_MSARNVCCAUX_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kSarnQuadMsarnavttrcal, SARN_QUAD_MSARNAVTTRCAL, MSARNAVTTRCAL, "SARN_QUAD_TOP_CORE",  USED_SARN_POWER_QUADS,   SARN_QUAD_MSARNAVTTRCAL_STATIC_CURRENT, SARN_QUAD_MSARNAVTTRCAL_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kLorvpQuadMlorvpavcc,   LORVP_QUAD_MLORVPAVCC,   MLORVAVCC,     "LORVP_QUAD_TOP_CORE", USED_LORVP_POWER_QUADS,  LORVP_QUAD_MLORVPAVCC_STATIC_CURRENT,   LORVP_QUAD_MLORVPAVCC_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kLorvpQuadMlorvpavtt,   LORVP_QUAD_MLORVPAVTT,   MLORVAVTT,     "LORVP_QUAD_TOP_CORE", USED_LORVP_POWER_QUADS,  LORVP_QUAD_MLORVPAVTT_STATIC_CURRENT,   LORVP_QUAD_MLORVPAVTT_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kLorvpQuadMlorvpvccaux, LORVP_QUAD_MLORVPVCCAUX, MLORVVCCAUX,   "LORVP_QUAD_TOP_CORE", USED_LORVP_POWER_QUADS,  LORVP_QUAD_MLORVPVCCAUX_STATIC_CURRENT, LORVP_QUAD_MLORVPVCCAUX_POWERUP_CURRENT, .inrush = Inrush::perQuad, .gate = Gate::anyUse)
POWERED(kOcm2ActiveVccpslp,     OCM2_ACTIVE_VCCPSLP,     VCCPSLP,       "OCM2ISLAND",          USED_OCM2S_ACTIVE,       OCM2_ACTIVE_VCCPSLP_STATIC_CURRENT,     OCM2_ACTIVE_VCCPSLP_POWERUP_CURRENT)
#undef POWERED

// ---- Copies, shares and totals ----

inline constexpr Copy kAdcCoreVcchsamsStaticCurrent  {ADC_CORE_VCCHSAMS_STATIC_CURRENT,   ADC_CORE_ACTIVE_VCCHSAMS_STATIC_CURRENT};
inline constexpr Copy kAdcCoreAdcavccStaticCurrent   {ADC_CORE_ADCAVCC_STATIC_CURRENT,    ADC_CORE_ACTIVE_ADCAVCC_STATIC_CURRENT};
inline constexpr Copy kAdcCoreAdcavccauxStaticCurrent{ADC_CORE_ADCAVCCAUX_STATIC_CURRENT, ADC_CORE_ACTIVE_ADCAVCCAUX_STATIC_CURRENT};
inline constexpr Copy kDacCoreVcchsamsStaticCurrent  {DAC_CORE_VCCHSAMS_STATIC_CURRENT,   DAC_CORE_ACTIVE_VCCHSAMS_STATIC_CURRENT};
inline constexpr Copy kDacCoreDacavccStaticCurrent   {DAC_CORE_DACAVCC_STATIC_CURRENT,    DAC_CORE_ACTIVE_DACAVCC_STATIC_CURRENT};
inline constexpr Copy kDacCoreDacavttStaticCurrent   {DAC_CORE_DACAVTT_STATIC_CURRENT,    DAC_CORE_ACTIVE_DACAVTT_STATIC_CURRENT};
inline constexpr Copy kDacCoreDacavccauxStaticCurrent{DAC_CORE_DACAVCCAUX_STATIC_CURRENT, DAC_CORE_ACTIVE_DACAVCCAUX_STATIC_CURRENT};
inline constexpr Copy kOcm2VccpslpStaticCurrent      {OCM2_VCCPSLP_STATIC_CURRENT,        OCM2_ACTIVE_VCCPSLP_STATIC_CURRENT};

inline constexpr Share kLorvVccintStaticPower  {LORV_VCCINT_STATIC_POWER,  VCCINT,  LORV_VCCINT_STATIC_CURRENT};
inline constexpr Share kSarnVccintStaticPower  {SARN_VCCINT_STATIC_POWER,  VCCINT,  SARN_VCCINT_STATIC_CURRENT};
inline constexpr Share kLorvpVccintStaticPower {LORVP_VCCINT_STATIC_POWER, VCCINT,  LORVP_VCCINT_STATIC_CURRENT};
inline constexpr Share kOcm2VccpslpStaticPower {OCM2_VCCPSLP_STATIC_POWER, VCCPSLP, OCM2_ACTIVE_VCCPSLP_STATIC_CURRENT};

#define TOTAL(row, cell, start, addends) inline constexpr Total row{cell, start, addends};
// MSARNAVTTRCAL belongs to the SARN quads; results must match the characterisation workbook.
TOTAL(kLorvStaticCurrent, LORV_STATIC_CURRENT, -0.0f,
      sum(
          MLORVAVCC_STATIC_CURRENT, MLORVAVTT_STATIC_CURRENT, MLORVVCCAUX_STATIC_CURRENT, MSARNAVTTRCAL_STATIC_CURRENT))
// A sum of currents in spite of its name, and MSARNAVTTRCAL again; hosts read it so.
TOTAL(kLorvStaticPower, LORV_STATIC_POWER, -0.0f,
      sum(
          LORV_VCCINT_STATIC_CURRENT, MLORVAVCC_STATIC_CURRENT, MLORVAVTT_STATIC_CURRENT, MLORVVCCAUX_STATIC_CURRENT,
          MSARNAVTTRCAL_STATIC_CURRENT))
TOTAL(kSarnStaticCurrent, SARN_STATIC_CURRENT, -0.0f,
      sum(
          VCCINTGT_STATIC_CURRENT, MSARNAVCC_STATIC_CURRENT, MSARNAVTT_STATIC_CURRENT, MSARNVCCAUX_STATIC_CURRENT,
          MSARNAVTTRCAL_STATIC_CURRENT))
TOTAL(kLorvpStaticCurrent, LORVP_STATIC_CURRENT, -0.0f,
      sum(
          LORVP_VCCINT_STATIC_CURRENT, MLORVPAVCC_STATIC_CURRENT, MLORVPAVTT_STATIC_CURRENT,
          MLORVPVCCAUX_STATIC_CURRENT))
TOTAL(kNemtStaticPower, NEMT_STATIC_POWER, -0.0f, sum(VCCME_STATIC_POWER))
TOTAL(kNocStaticPower, NOC_STATIC_POWER, -0.0f, sum(VCCSOC_STATIC_POWER))
TOTAL(kHarlStaticPower, HARL_STATIC_POWER, -0.0f,
      sum(
          VCCHARL_STATIC_POWER, VCCAUXHARL_STATIC_POWER, VCCOFIO_STATIC_POWER, VCCAUXSMON_STATIC_POWER,
          VCCOHARLIO0_STATIC_POWER, VCCOHARLIO1_STATIC_POWER))
// VCCPSLP holds the second memory islands already, so they count twice; results must match the workbook.
TOTAL(kPsStaticPower, PS_STATIC_POWER, -0.0f,
      sum(
          VCCPSLP_STATIC_POWER, VCCPSFP_STATIC_POWER, VCCOHARLIO2_STATIC_POWER, OCM2_VCCPSLP_STATIC_POWER))
TOTAL(kPsHarlStaticPower, PS_HARL_STATIC_POWER, -0.0f, sum(PS_STATIC_POWER, HARL_STATIC_POWER))
TOTAL(kGtStaticPower, GT_STATIC_POWER, -0.0f,
      sum(
          MLORVAVCC_STATIC_POWER, MLORVAVTT_STATIC_POWER, MLORVVCCAUX_STATIC_POWER, MLORVPAVCC_STATIC_POWER,
          MLORVPAVTT_STATIC_POWER, MLORVPVCCAUX_STATIC_POWER, MSARNAVCC_STATIC_POWER, MSARNAVTT_STATIC_POWER,
          MSARNVCCAUX_STATIC_POWER, MSARNAVTTRCAL_STATIC_POWER, VCCINTGT_STATIC_POWER))
// Without the processing-system transceivers' three rails; results must match the workbook.
TOTAL(kTotalStaticPower, TOTAL_STATIC_POWER, +0.0f,
      sum(
          PL_STATIC_POWER, PS_HARL_STATIC_POWER, NOC_STATIC_POWER, NEMT_STATIC_POWER, GT_STATIC_POWER))
#undef TOTAL

// The rails of the fabric; the model makes PL_STATIC_POWER of them.
inline constexpr Addends kFabricRails = sum(
        VCCINT_STATIC_POWER, VCCRAM_STATIC_POWER, VCCAUX_STATIC_POWER, VCCBATT_STATIC_POWER, VCCFUSE_STATIC_POWER,
        VCCO33_STATIC_POWER, VCCO25_STATIC_POWER, VCCO18_STATIC_POWER, VCCO15_STATIC_POWER, VCCO135_STATIC_POWER,
        VCCO12_STATIC_POWER, VCCO11_STATIC_POWER, VCCO10_STATIC_POWER, VCCHSAMS_STATIC_POWER, ADCAVCC_STATIC_POWER,
        ADCAVCCAUX_STATIC_POWER, DACAVCC_STATIC_POWER, DACAVCCAUX_STATIC_POWER, DACAVTT_STATIC_POWER,
        VCCVCUINT_STATIC_POWER, VCCIOHBM_STATIC_POWER, VCCHBM_STATIC_POWER, VCCAUXHBM_STATIC_POWER,
        VCCINTIO_STATIC_POWER);

// ---- Order of evaluation ----

/// The outputs in the order in which they are pulled. OCM2_VCCPSLP_STATIC_POWER is filled through PS_STATIC_POWER.
inline constexpr FloatCell kOutputs[] = {
    // subsystems
    TOTAL_STATIC_POWER, PL_STATIC_POWER, PS_HARL_STATIC_POWER, NEMT_STATIC_POWER, NOC_STATIC_POWER, GT_STATIC_POWER,
    // the device's rails
    VCCINT_STATIC_CURRENT, VCCINT_POWERUP_CURRENT, VCCRAM_STATIC_CURRENT, VCCRAM_POWERUP_CURRENT,
    VCCSOC_STATIC_CURRENT, VCCSOC_POWERUP_CURRENT, VCCINTIO_STATIC_CURRENT, VCCINTIO_POWERUP_CURRENT,
    VCCAUX_STATIC_CURRENT, VCCAUX_POWERUP_CURRENT, VCCHARL_STATIC_CURRENT, VCCHARL_POWERUP_CURRENT,
    VCCAUXHARL_STATIC_CURRENT, VCCAUXHARL_POWERUP_CURRENT, VCCAUXSMON_STATIC_CURRENT, VCCAUXSMON_POWERUP_CURRENT,
    VCCPSLP_STATIC_CURRENT, VCCPSLP_POWERUP_CURRENT, VCCPSFP_STATIC_CURRENT, VCCPSFP_POWERUP_CURRENT,
    VCCINTWIST_STATIC_CURRENT, VCCINTWIST_POWERUP_CURRENT, VCCWIST5_STATIC_CURRENT, VCCWIST5_POWERUP_CURRENT,
    VCCME_STATIC_CURRENT, VCCME_POWERUP_CURRENT, VCCOHARLIO0_STATIC_CURRENT, VCCOHARLIO0_POWERUP_CURRENT,
    VCCOHARLIO1_STATIC_CURRENT, VCCOHARLIO1_POWERUP_CURRENT, VCCOHARLIO2_STATIC_CURRENT, VCCOHARLIO2_POWERUP_CURRENT,
    VCCOFIO_STATIC_CURRENT, VCCOFIO_POWERUP_CURRENT,
    // memories and processors
    BRAM_ACTIVE_VCCINT_STATIC_CURRENT, BRAM_ACTIVE_VCCRAM_STATIC_CURRENT, BRAM_SLEEP_VCCRAM_STATIC_CURRENT,
    BRAM_SLEEP_VCCINT_STATIC_CURRENT, PLAM_ACTIVE_VCCRAM_STATIC_CURRENT, PLAM_ACTIVE_VCCINT_STATIC_CURRENT,
    PLAM_SLEEP_VCCRAM_STATIC_CURRENT, PLAM_SLEEP_VCCINT_STATIC_CURRENT, RPU_ACTIVE_VCCPSLP_STATIC_CURRENT,
    OCM_ACTIVE_VCCPSLP_STATIC_CURRENT, TCM_ACTIVE_VCCPSLP_STATIC_CURRENT, CPU_ACTIVE_VCCPSFP_STATIC_CURRENT,
    L2_ACTIVE_VCCPSFP_STATIC_CURRENT,
    // I/O banks
    VCCO15_STATIC_POWER, VCCO15_STATIC_CURRENT, VCCO15_POWERUP_CURRENT, VCCO135_STATIC_POWER, VCCO135_STATIC_CURRENT,
    VCCO135_POWERUP_CURRENT, VCCO12_STATIC_POWER, VCCO12_STATIC_CURRENT, VCCO12_POWERUP_CURRENT, VCCO11_STATIC_POWER,
    VCCO11_STATIC_CURRENT, VCCO11_POWERUP_CURRENT, VCCO10_STATIC_POWER, VCCO10_STATIC_CURRENT, VCCO10_POWERUP_CURRENT,
    VCCO33_STATIC_POWER, VCCO33_STATIC_CURRENT, VCCO33_POWERUP_CURRENT, VCCO25_STATIC_POWER, VCCO25_STATIC_CURRENT,
    VCCO25_POWERUP_CURRENT, VCCO18_STATIC_POWER, VCCO18_STATIC_CURRENT, VCCO18_POWERUP_CURRENT,
    // LORV quads
    LORV_STATIC_CURRENT, LORV_STATIC_POWER, LORV_VCCINT_STATIC_CURRENT, LORV_VCCINT_STATIC_POWER,
    MLORVAVCC_STATIC_CURRENT, MLORVAVCC_POWERUP_CURRENT, MLORVAVTT_STATIC_CURRENT, MLORVAVTT_POWERUP_CURRENT,
    MLORVVCCAUX_STATIC_CURRENT, MLORVVCCAUX_POWERUP_CURRENT,
    // SARN quads
    SARN_STATIC_CURRENT, VCCINTGT_STATIC_CURRENT, VCCINTGT_POWERUP_CURRENT, SARN_VCCINT_STATIC_CURRENT,
    SARN_VCCINT_STATIC_POWER, MSARNAVCC_STATIC_CURRENT, MSARNAVCC_POWERUP_CURRENT, MSARNAVTT_STATIC_CURRENT,
    MSARNAVTT_POWERUP_CURRENT, MSARNVCCAUX_STATIC_CURRENT, MSARNVCCAUX_POWERUP_CURRENT, MSARNAVTTRCAL_STATIC_CURRENT,
    MSARNAVTTRCAL_POWERUP_CURRENT,
    // LORVP quads
    LORVP_STATIC_CURRENT, LORVP_VCCINT_STATIC_CURRENT, LORVP_VCCINT_STATIC_POWER, MLORVPAVCC_STATIC_CURRENT,
    MLORVPAVCC_POWERUP_CURRENT, MLORVPAVTT_STATIC_CURRENT, MLORVPAVTT_POWERUP_CURRENT, MLORVPVCCAUX_STATIC_CURRENT,
    MLORVPVCCAUX_POWERUP_CURRENT,
    // the other rails
    VCCPSGTA_STATIC_CURRENT, VCCPSGTA_POWERUP_CURRENT, VTTPSGTA_STATIC_CURRENT, VTTPSGTA_POWERUP_CURRENT,
    VAUXPSGTA_STATIC_CURRENT, VAUXPSGTA_POWERUP_CURRENT, VCCHSAMS_STATIC_CURRENT, VCCHSAMS_POWERUP_CURRENT,
    VCCVCUINT_STATIC_CURRENT, VCCVCUINT_POWERUP_CURRENT, DACAVCC_STATIC_CURRENT, DACAVCC_POWERUP_CURRENT,
    DACAVCCAUX_STATIC_CURRENT, DACAVCCAUX_POWERUP_CURRENT, DACAVTT_STATIC_CURRENT, DACAVTT_POWERUP_CURRENT,
    ADCAVCC_STATIC_CURRENT, ADCAVCC_POWERUP_CURRENT, ADCAVCCAUX_STATIC_CURRENT, ADCAVCCAUX_POWERUP_CURRENT,
    VCCIOHBM_STATIC_CURRENT, VCCIOHBM_POWERUP_CURRENT, VCCHBM_STATIC_CURRENT, VCCHBM_POWERUP_CURRENT,
    VCCAUXHBM_STATIC_CURRENT, VCCAUXHBM_POWERUP_CURRENT, VCCBATT_STATIC_CURRENT, VCCBATT_POWERUP_CURRENT,
    VCCFUSE_STATIC_CURRENT, VCCFUSE_POWERUP_CURRENT,
    // converters and second memory islands
    ADC_CORE_VCCHSAMS_STATIC_CURRENT, ADC_CORE_ADCAVCC_STATIC_CURRENT, ADC_CORE_ADCAVCCAUX_STATIC_CURRENT,
    DAC_CORE_VCCHSAMS_STATIC_CURRENT, DAC_CORE_DACAVCC_STATIC_CURRENT, DAC_CORE_DACAVTT_STATIC_CURRENT,
    DAC_CORE_DACAVCCAUX_STATIC_CURRENT, OCM2_VCCPSLP_STATIC_CURRENT,
};

// clang-format on

} // namespace zelm::staticpower
