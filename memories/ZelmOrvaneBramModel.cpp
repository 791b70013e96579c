#include "memories/ZelmOrvaneBramModel.h"

#include "framework/ZelmModelBlockImpl.h"

#include <array>

#define ZELM_MODEL ZelmOrvaneBramModel
#define ZELM_CELL_ROWS "memories/ZelmOrvaneBramCells.def"
#define ZELM_TABLE_ROWS "memories/ZelmOrvaneBramTables.def"

namespace {

using Params = ZelmOrvaneBramParams;
using zelm::Key;

// The keys of all tables. The first two are the true dual-port primitives; the others follow in the order of selection.
enum KeyIndex : std::size_t {
    blkm18,
    blkm36,
    blkm18Sdp3636,
    blkm18Sdp3618,
    blkm18Sdp1836,
    blkm36Sdp7272,
    blkm36Sdp7236,
    blkm36Sdp3672,
    blkm36SdpEcc,
    blkm36SdpEccEncodeOnly,
    blkm36SdpEccDecodeOnly,
    noKey
};
constexpr std::array<Key, noKey> kKeys{"BLKM18",
                                       "BLKM36",
                                       "BLKM18SDP_36_36",
                                       "BLKM18SDP_36_18",
                                       "BLKM18SDP_18_36",
                                       "BLKM36SDP_72_72",
                                       "BLKM36SDP_72_36",
                                       "BLKM36SDP_36_72",
                                       "BLKM36SDP_ECC",
                                       "BLKM36SDP_ECC_ENCODE_ONLY",
                                       "BLKM36SDP_ECC_DECODE_ONLY"};
constexpr std::size_t kTrueDualPortKeys = blkm36 + 1;

// Names a write mode and its rows in the tables of dynamic current.
struct WriteMode {
    std::string_view name;
    Key readRow;
    Key writeRow;
};
constexpr WriteMode kWriteModes[] = {
    {"READ_FIRST", "RF_R", "RF_W"}, {"WRITE_FIRST", "WF_R", "WF_W"}, {"NO_CHANGE", "NC_R", "NC_W"}};

// Reading or writing through one port.
struct Access {
    bool inSimpleDualPort; // whether the port does this in the simple-dual-port modes
    Key direction;
    Key WriteMode::*row;
};

struct Port {
    Params::FloatEnum clock;
    Params::FloatEnum enableRate;
    Params::FloatEnum writeEnable;
    Params::FloatEnum toggleRate;
    Params::StringEnum writeMode;
    Access read;
    Access write;
    Params::FloatEnum readRate;
    Params::FloatEnum readToggle;
    Params::FloatEnum standby;
    Params::FloatEnum unusedPower;
    Params::FloatEnum writeRate;
    Params::FloatEnum writeToggle;
};
constexpr Port kPortA{
    .clock = Params::PORT_A_CLOCK,
    .enableRate = Params::PORT_A_ENABLE_RATE,
    .writeEnable = Params::PORT_A_WRITE_ENABLE,
    .toggleRate = Params::TOGGLE_RATE_A,
    .writeMode = Params::PORT_A_WRITE_MODE,
    .read = {.inSimpleDualPort = true, .direction = "R", .row = &WriteMode::readRow},
    .write = {.inSimpleDualPort = false, .direction = "W", .row = &WriteMode::writeRow},
    .readRate = Params::READ_RATE_A,
    .readToggle = Params::TR_CALC_READ_A,
    .standby = Params::STDBY_CALC_A,
    .unusedPower = Params::UNUSED_BRAM_CALC_A,
    .writeRate = Params::WRITE_RATE_A,
    .writeToggle = Params::TR_CALC_WRITE_A,
};
constexpr Port kPortB{
    .clock = Params::PORT_B_CLOCK,
    .enableRate = Params::PORT_B_ENABLE_RATE,
    .writeEnable = Params::PORT_B_WRITE_ENABLE,
    .toggleRate = Params::TOGGLE_RATE_B,
    .writeMode = Params::PORT_B_WRITE_MODE,
    .read = {.inSimpleDualPort = false, .direction = "R", .row = &WriteMode::readRow},
    .write = {.inSimpleDualPort = true, .direction = "W", .row = &WriteMode::writeRow},
    .readRate = Params::READ_RATE_B,
    .readToggle = Params::TR_CALC_READ_B,
    .standby = Params::STDBY_CALC_B,
    .unusedPower = Params::UNUSED_BRAM_CALC_B,
    .writeRate = Params::WRITE_RATE_B,
    .writeToggle = Params::TR_CALC_WRITE_B,
};

enum class Rail { vccint, vccram };

struct PortOnRail {
    const Port& port;
    Rail rail;
    Params::FloatEnum activity;
    Params::FloatEnum readCurrent;
    Params::FloatEnum writeCurrent;
};
constexpr PortOnRail kAOnVccint{kPortA, Rail::vccint, Params::ACTIVITY_A_VCCINT, Params::READ_CURRENT_A_VCCINT,
                                Params::WRITE_CURRENT_A_VCCINT};
constexpr PortOnRail kAOnVccram{kPortA, Rail::vccram, Params::ACTIVITY_A_VCCRAM, Params::READ_CURRENT_A_VCCRAM,
                                Params::WRITE_CURRENT_A_VCCRAM};
constexpr PortOnRail kBOnVccint{kPortB, Rail::vccint, Params::ACTIVITY_B_VCCINT, Params::READ_CURRENT_B_VCCINT,
                                Params::WRITE_CURRENT_B_VCCINT};
constexpr PortOnRail kBOnVccram{kPortB, Rail::vccram, Params::ACTIVITY_B_VCCRAM, Params::READ_CURRENT_B_VCCRAM,
                                Params::WRITE_CURRENT_B_VCCRAM};

// The modes. The power cells of each follow each other in enum order, port A before B and VCCINT before VCCRAM.
struct Configuration {
    std::string_view mode;
    Params::FloatEnum firstPower;
};
enum PowerCell { aOnVccint, aOnVccram, bOnVccint, bOnVccram };
constexpr Configuration kConfigurations[] = {
    {"BLKM18", Params::BLKM18_A_VCCINT_PWR},
    {"BLKM36", Params::BLKM36_A_VCCINT_PWR},
    {"BLKM18SDP", Params::BLKM18SDP_A_VCCINT_PWR},
    {"BLKM36SDP", Params::BLKM36SDP_A_VCCINT_PWR},
    {"BLKM36SDP_ECC", Params::BLKM36SDP_ECC_A_VCCINT_PWR},
    {"BLKM36SDP_ECC_ENCODE_ONLY", Params::BLKM36SDP_ECC_ENCODE_ONLY_A_VCCINT_PWR},
    {"BLKM36SDP_ECC_DECODE_ONLY", Params::BLKM36SDP_ECC_DECODE_ONLY_A_VCCINT_PWR},
};

} // namespace

struct ZelmOrvaneBramModel::Sheet : zelm::Sheet<ZelmOrvaneBramModel> {
#include "framework/ZelmAccessors.inc"

    void pullOutputs() const
    {
        VccintPower();
        VccramPower();
    }

    // ---- Cascade ----

    int computeMod() const
    {
        const int brams = NumBrams();
        const int groupSize = CascadeGroupSize();
        return zelm::remainderOrZero(brams, groupSize);
    }

    int computeBramMod() const
    {
        const int brams = NumBrams();
        const int leftOver = Mod();
        return zelm::wrapSubtract(brams, leftOver);
    }

    int computeBramInCasc() const
    {
        const int inWholeGroups = BramMod();
        const int groupSize = CascadeGroupSize();
        return zelm::quotientOrZero(inWholeGroups, groupSize);
    }

    int computeUnusedBramStdby() const
    {
        const int brams = NumBrams();
        const int active = BramInCasc();
        return zelm::wrapSubtract(brams, active);
    }

    float simVoltageOf(Rail rail) const
    {
        return rail == Rail::vccint ? findSimVoltage("VCCINT") : findSimVoltage("VCCRAM");
    }

    double activity(const PortOnRail& portOnRail) const
    {
        const float clock = value(portOnRail.port.clock);
        const float simVoltage = simVoltageOf(portOnRail.rail);
        const int active = BramInCasc();
        const double clockVolts = clock * simVoltage;
        return clockVolts * 0.001 * active;
    }

    // ---- Primitive key ----

    bool isTrueDualPort() const
    {
        const Key& mode = Mode();
        return mode == "BLKM18" || mode == "BLKM36";
    }

    std::size_t selectedKey() const
    {
        const Key& mode = Mode();
        const int widthA = PortABitWidth();
        const int widthB = PortBBitWidth();
        if (mode == "BLKM18SDP") {
            if (widthA == 36 && widthB == 36)
                return blkm18Sdp3636;
            if (widthA == 36 && widthB < 19)
                return blkm18Sdp3618;
            return widthB == 36 && widthA < 19 ? blkm18Sdp1836 : noKey;
        }
        if (mode == "BLKM36SDP") {
            if (widthA == 72 && widthB == 72)
                return blkm36Sdp7272;
            if (widthA == 72 && widthB < 37)
                return blkm36Sdp7236;
            return widthB == 72 && widthA < 37 ? blkm36Sdp3672 : noKey;
        }
        for (const KeyIndex key : {blkm18, blkm36, blkm36SdpEcc, blkm36SdpEccEncodeOnly, blkm36SdpEccDecodeOnly}) {
            if (mode == kKeys[key].text())
                return key;
        }
        return noKey;
    }

    // The current of the selected key, 0 without one. All keys are looked up before one is chosen. What a port doesn't
    // do in the simple-dual-port modes has currents for the true dual-port keys only.
    template <class Current>
    float ofSelectedKey(bool simpleDualPort, Current current) const
    {
        const std::size_t count = simpleDualPort ? kKeys.size() : kTrueDualPortKeys;
        std::array<float, kKeys.size()> currents{};
        for (std::size_t key = 0; key < count; ++key)
            currents[key] = current(kKeys[key]);
        const std::size_t selected = selectedKey();
        return selected < count ? currents[selected] : 0.0f;
    }

    float computeModStdbyCurrent() const
    {
        return ofSelectedKey(true, [&](const Key& key) { return findStandbyCurrent(key); });
    }

    // ---- Access rates ----

    float readRate(const Port& port) const
    {
        const float enableRate = value(port.enableRate);
        const float writeEnable = value(port.writeEnable);
        const float readOnly = port.read.inSimpleDualPort ? enableRate : 0.0f;
        return isTrueDualPort() ? enableRate - MIN(enableRate, writeEnable) : readOnly;
    }

    float writeRate(const Port& port) const
    {
        const float enableRate = value(port.enableRate);
        const float writeEnable = value(port.writeEnable);
        const float written = MIN(enableRate, writeEnable);
        // Port B writes whatever MODE says, an unknown one too: the workbook has no test there.
        return port.write.inSimpleDualPort || isTrueDualPort() ? written : 0.0f;
    }

    // ---- Currents ----

    float current(const Access& access, const PortOnRail& portOnRail) const
    {
        const Key& writeMode = value(portOnRail.port.writeMode);
        Key row; // stays empty for an unknown write mode, which draws nothing
        for (const WriteMode& known : kWriteModes)
            row = writeMode == known.name ? known.*access.row : row;
        return ofSelectedKey(access.inSimpleDualPort, [&](const Key& key) {
            if (row.empty())
                return 0.0f;
            return portOnRail.rail == Rail::vccint ? findDynamicCurrentVccint(key, row)
                                                   : findDynamicCurrentVccram(key, row);
        });
    }

    float readCurrent(const PortOnRail& portOnRail) const
    {
        return current(portOnRail.port.read, portOnRail);
    }

    float writeCurrent(const PortOnRail& portOnRail) const
    {
        return current(portOnRail.port.write, portOnRail);
    }

    // No clamp: the tables hold for 25 percent, and calmer data lower the current.
    float toggleTerm(const Access& access, const Port& port) const
    {
        const float toggleRate = value(port.toggleRate);
        return ofSelectedKey(access.inSimpleDualPort, [&](const Key& key) {
            return (toggleRate * 100.0f - 25.0f) * findPerTrCurrent(key, access.direction);
        });
    }

    float readToggle(const Port& port) const
    {
        return toggleTerm(port.read, port);
    }

    float writeToggle(const Port& port) const
    {
        return toggleTerm(port.write, port);
    }

    float standby(const Port& port) const
    {
        const float standbyCurrent = ModStdbyCurrent();
        const float enableRate = value(port.enableRate);
        return standbyCurrent * (1.0f - enableRate);
    }

    // Memories that stand by don't care for the enable rate.
    double unusedPower(const Port& port) const
    {
        const float clock = value(port.clock);
        const float simVoltage = findSimVoltage("VCCINT");
        const int unused = UnusedBramStdby();
        const double standbyCurrent = ModStdbyCurrent();
        const double clockVolts = clock * simVoltage;
        return clockVolts * 0.001 * unused * standbyCurrent;
    }

    // ---- Power per port: one formula for all configurations ----

    float vccintPower(const PortOnRail& portOnRail) const
    {
        const Port& port = portOnRail.port;
        const float active = value(portOnRail.activity);
        const float reads = value(port.readRate);
        const float read = value(portOnRail.readCurrent);
        const float readToggling = value(port.readToggle);
        const float writes = value(port.writeRate);
        const float write = value(portOnRail.writeCurrent);
        const float writeToggling = value(port.writeToggle);
        const float standingBy = value(port.standby);
        const float unused = value(port.unusedPower);
        return active * (reads * (read + readToggling) + writes * (write + writeToggling) + standingBy) + unused;
    }

    // The memory array has no toggle, standby and idle-member terms of its own.
    float vccramPower(const PortOnRail& portOnRail) const
    {
        const float active = value(portOnRail.activity);
        const float reads = value(portOnRail.port.readRate);
        const float read = value(portOnRail.readCurrent);
        const float writes = value(portOnRail.port.writeRate);
        const float write = value(portOnRail.writeCurrent);
        return active * (reads * read + writes * write);
    }

    // ---- Rails ----

    // Both ports of the configuration that MODE names, 0 for an unknown one. All configurations are pulled before.
    float sumOfMode(PowerCell portA, PowerCell portB) const
    {
        const Key& mode = Mode();
        float selected = 0.0f;
        for (const Configuration& configuration : kConfigurations) {
            const float a = value(zelm::cellBehind(configuration.firstPower, portA));
            const float b = value(zelm::cellBehind(configuration.firstPower, portB));
            selected = mode == configuration.mode ? a + b : selected;
        }
        return selected;
    }

    double computeVccintPower() const
    {
        const float sum = sumOfMode(aOnVccint, bOnVccint);
        const float vccint = Vccint();
        return sum * zelm::voltageFactor(vccint, findSimVoltage("VCCINT"));
    }

    double computeVccramPower() const
    {
        const float sum = sumOfMode(aOnVccram, bOnVccram);
        const float vccram = Vccram();
        return sum * zelm::voltageFactor(vccram, findSimVoltage("VCCRAM"));
    }
};

#include "framework/ZelmModelBodies.inc"
