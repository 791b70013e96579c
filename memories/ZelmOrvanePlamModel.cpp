#include "memories/ZelmOrvanePlamModel.h"

#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvanePlamModel
#define ZELM_CELL_ROWS "memories/ZelmOrvanePlamCells.def"
#define ZELM_TABLE_ROWS "memories/ZelmOrvanePlamTables.def"

namespace {

using Params = ZelmOrvanePlamParams;

struct Port {
    Params::FloatEnum enableRate;
    Params::FloatEnum writeEnable;
    Params::IntEnum matrixSize;
    Params::FloatEnum regCasUsed;
    Params::FloatEnum readRate;
    Params::FloatEnum writeRate;
    Params::FloatEnum readClockCurrent;
    Params::FloatEnum writeClockCurrent;
};

constexpr Port kPortA{
    .enableRate = Params::ENABLE_RATE_A,
    .writeEnable = Params::WRITE_ENABLE_A,
    .matrixSize = Params::MATRIX_SIZE_A,
    .regCasUsed = Params::REG_CAS_USED_A,
    .readRate = Params::READ_RATE_A,
    .writeRate = Params::WRITE_RATE_A,
    .readClockCurrent = Params::PRD1_CLK_VCCINT_A,
    .writeClockCurrent = Params::PWR1_CLK_VCCINT_A,
};
constexpr Port kPortB{
    .enableRate = Params::ENABLE_RATE_B,
    .writeEnable = Params::WRITE_ENABLE_B,
    .matrixSize = Params::MATRIX_SIZE_B,
    .regCasUsed = Params::REG_CAS_USED_B,
    .readRate = Params::READ_RATE_B,
    .writeRate = Params::WRITE_RATE_B,
    .readClockCurrent = Params::PRD1_CLK_VCCINT_B,
    .writeClockCurrent = Params::PWR1_CLK_VCCINT_B,
};

} // namespace

struct ZelmOrvanePlamModel::Sheet : zelm::Sheet<ZelmOrvanePlamModel> {
#include "framework/ZelmAccessors.inc"

    float clockCurrent(const Key& event) const
    {
        return findDynamicCurrents(event, "VCCINT_CLK");
    }

    float dataCurrent(const Key& event) const
    {
        return findDynamicCurrents(event, "VCCINT_DATA");
    }

    float ramCurrent(const Key& event) const
    {
        return findDynamicCurrents(event, "VCCRAM");
    }

    float scaleFactor(const Key& factor) const
    {
        return findScaleFactors(factor, "");
    }

    void pullOutputs() const
    {
        VccintPwrNPlams();
        VccramPwrNPlams();
        VccintActivePower();
        VccramActivePower();
    }

    // ---- Derived inputs ----

    int cascadeLatency() const
    {
        const float memories = static_cast<float>(CascadeGroupSize());
        return zelm::truncate(ROUNDUP(memories / 3.0f, 0));
    }

    int idleCycles() const
    {
        const int others = zelm::wrapSubtract(CascadeGroupSize(), 2);
        return zelm::truncate(MAX(10.0f, static_cast<float>(others)));
    }

    std::string_view cascadedSoFar() const
    {
        return Latency() >= 1 ? "YES" : "NO";
    }

    std::string_view eccOfMode() const
    {
        return Mode() == "ECC" ? "YES" : "NO";
    }

    static int portWidthFor(int dataWidth)
    {
        if (dataWidth < 10)
            return 9;
        if (dataWidth < 19)
            return 18;
        return dataWidth < 37 ? 36 : 72;
    }

    // A whole number: 0 as soon as there are more memories than registers.
    float registersPerMemory() const
    {
        const int latency = Latency();
        const int memories = CascadeGroupSize();
        return static_cast<float>(zelm::quotientOrZero(latency, memories));
    }

    // ---- Rates ----

    float readRate(const Port& port) const
    {
        const float enableRate = value(port.enableRate);
        const float writeEnable = value(port.writeEnable);
        const float matrixSize = static_cast<float>(value(port.matrixSize));
        return (enableRate - MIN(enableRate, writeEnable)) / MAX(1.0f, matrixSize);
    }

    float writeRate(const Port& port) const
    {
        const float enableRate = value(port.enableRate);
        const float writeEnable = value(port.writeEnable);
        const float matrixSize = static_cast<float>(value(port.matrixSize));
        return MIN(enableRate, writeEnable) / MAX(1.0f, matrixSize);
    }

    float computeSleepRateFinal() const
    {
        const Key& autoSleep = AutoSleepEnabled();
        const float enableRateA = EnableRateA();
        const float matrixSizeA = static_cast<float>(MatrixSizeA());
        const float enableRateB = EnableRateB();
        const float matrixSizeB = static_cast<float>(MatrixSizeB());
        const int inactiveCycles = AvgInactiveCycles();
        const int sleepLatency = AutoSleepLatency();
        const float sleepRate = SleepRate();
        if (autoSleep != "YES")
            return sleepRate;
        const float idleA = 1.0f - zelm::ratioOrZero(enableRateA, matrixSizeA);
        const float busyB = zelm::ratioOrZero(enableRateB, matrixSizeB);
        return inactiveCycles < sleepLatency ? 0.0f : MAX(idleA - busyB, 0.0f);
    }

    float computeActiveRate() const
    {
        const float asleep = SleepRateFinal();
        const float readsA = ReadRateA();
        const float writesA = WriteRateA();
        const float readsB = ReadRateB();
        const float writesB = WriteRateB();
        return MIN(1.0f - asleep, readsA + writesA + readsB + writesB);
    }

    float computeStbyRate() const
    {
        const float active = ActiveRate();
        const float asleep = SleepRateFinal();
        return MAX(0.0f, 1.0f - active - asleep);
    }

    // ---- Toggle rates, averaged over all inputs (two ports of 72 data and 26 address and control bits) and all
    // outputs
    // ----

    float computeTrAddr() const
    {
        return InputToggleRate();
    }

    float computeTriFinal() const
    {
        const float writesA = WriteRateA();
        const float writesB = WriteRateB();
        const float address = TrAddr();
        const float input = InputToggleRate();
        const float widthA = static_cast<float>(DataWidthA());
        const float widthB = static_cast<float>(DataWidthB());
        if (writesA + writesB == 0.0f)
            return 52.0f * address / 196.0f;
        if (writesA == 0.0f)
            return (input * widthB + 52.0f * address) / 196.0f;
        if (writesB == 0.0f)
            return (widthA * input + 52.0f * address) / 196.0f;
        return (widthA * input + input * widthB + 52.0f * address) / 196.0f;
    }

    float computeTrStdby() const
    {
        return TriFinal();
    }

    float computeTroFinal() const
    {
        const float readsA = ReadRateA();
        const float readsB = ReadRateB();
        const float output = OutputToggleRate();
        const int widthA = DataWidthA();
        const int widthB = DataWidthB();
        if (readsA + readsB == 0.0f)
            return 0.0f;
        if (readsA == 0.0f)
            return static_cast<float>(widthB) * output / 144.0f;
        if (readsB == 0.0f)
            return static_cast<float>(widthA) * output / 144.0f;
        return static_cast<float>(zelm::wrapAdd(widthA, widthB)) * output / 144.0f;
    }

    // ---- Scale factors ----

    float computePortWidthScale() const
    {
        const bool wideA = PortWidthA() > 36;
        const bool wideB = PortWidthB() > 36;
        const float noneWide = scaleFactor("PSTBY_PORT_SCALE1");
        const float oneWide = scaleFactor("PSTBY_PORT_SCALE2");
        if (wideA && wideB)
            return 1.0f;
        return wideA || wideB ? oneWide : noneWide;
    }

    float computeRegCasScaleFactor() const
    {
        const Key& cascaded = IsCascadedSofar();
        const float scale = scaleFactor("REG_CAS_SCALE");
        return cascaded == "YES" ? scale : 1.0f;
    }

    // The workbook asks for the cascade here again, so a factor that a host sets by hand counts in a cascade only.
    float cascadeScale() const
    {
        const Key& cascaded = IsCascadedSofar();
        const float scale = RegCasScaleFactor();
        return cascaded == "YES" ? scale : 1.0f;
    }

    // ---- Clock currents of the ports ----

    // Only a memory that isn't part of a matrix has the cascade's register in its input path.
    float inputRegisterCurrent(const Port& port) const
    {
        const float registers = value(port.regCasUsed);
        const int matrixSize = value(port.matrixSize);
        const float perRegister = clockCurrent("PIREG_PRE");
        return (matrixSize == 1 ? registers : 0.0f) * perRegister;
    }

    float readClockCurrent(const Port& port) const
    {
        const float base = clockCurrent("PRD1_BASE");
        const float outputRegister = clockCurrent("POREG_ECC");
        const float inputRegister = inputRegisterCurrent(port);
        return base + outputRegister + inputRegister;
    }

    float writeClockCurrent(const Port& port) const
    {
        const float base = clockCurrent("PWR1_BASE");
        const float inputRegister = inputRegisterCurrent(port);
        return base + inputRegister;
    }

    // ---- Standby and sleep; the data currents hold for a toggle rate of 25 percent, hence the factor 4 here and below
    // ----

    float standbyCurrent(const Key& event) const
    {
        const float widthScale = PortWidthScale();
        const float clock = clockCurrent(event);
        const float perToggle = dataCurrent(event);
        const float toggleRate = TrStdby();
        const float scale = cascadeScale();
        return widthScale * clock + perToggle * toggleRate * 4.0f * scale;
    }

    float computePstbyVccint() const
    {
        return standbyCurrent("PSTBY");
    }

    float computePstbypgVccint() const
    {
        return standbyCurrent("PSTBYPG");
    }

    float computePstbyRwVccint() const
    {
        const float widthScale = PortWidthScale();
        const float clock = clockCurrent("PSTBY");
        const float scale = cascadeScale();
        const float toggleRate = TriFinal();
        const float perToggle = dataCurrent("PSTBY");
        return widthScale * clock + scale * toggleRate * 4.0f * perToggle;
    }

    // Of an idle period's cycles two fall asleep, one stands by and the rest is power-gated.
    float computePslpVccint() const
    {
        const float cycles = static_cast<float>(AvgInactiveCycles());
        const float transition = dataCurrent("PSLPT");
        const float standby = PstbyVccint();
        const float gated = PstbypgVccint();
        const float falling = zelm::ratioOrZero(2.0f, cycles);
        const float waiting = zelm::ratioOrZero(1.0f, cycles);
        const float sleeping = 1.0f - zelm::ratioOrZero(3.0f, cycles);
        return (transition + standby) * falling + standby * waiting + gated * sleeping;
    }

    // The gated memory array draws nothing: no third term.
    float computePslpVbram() const
    {
        const float cycles = static_cast<float>(AvgInactiveCycles());
        const float standby = ramCurrent("PSTBY");
        const float transition = ramCurrent("PSLPT");
        const float falling = zelm::ratioOrZero(2.0f, cycles);
        const float waiting = zelm::ratioOrZero(1.0f, cycles);
        return (standby + transition) * falling + standby * waiting;
    }

    // ---- Cascade ----

    float computePcaspipeInVccint() const
    {
        const float clock = clockCurrent("PCASPIPE_IN");
        const float toggleRate = TriFinal();
        const float perToggle = dataCurrent("PCASPIPE_IN");
        return clock + toggleRate * perToggle * 4.0f;
    }

    float computePcaspipeRdoutVccint() const
    {
        const float clock = clockCurrent("PCASPIPE_RDOUT");
        const float toggleRate = TroFinal();
        const float perToggle = dataCurrent("PCASPIPE_RDOUT");
        return clock + toggleRate * perToggle * 4.0f;
    }

    float computePcasInVccint() const
    {
        return TriFinal() * dataCurrent("PCAS_IN") * 4.0f;
    }

    float computePcasRdoutVccint() const
    {
        return TroFinal() * dataCurrent("PCAS_RDOUT") * 4.0f;
    }

    // ---- Data path ----

    float computePrw1DataVccint() const
    {
        const int memories = CascadeGroupSize();
        const float in = TriFinal();
        const float out = TroFinal();
        const float registersA = RegCasUsedA();
        const float registersB = RegCasUsedB();
        const Key& encodesA = EccWrEnableA();
        const Key& encodesB = EccWrEnableB();
        const Key& decodesA = EccRdEnableA();
        const Key& decodesB = EccRdEnableB();
        const float readBase = dataCurrent("PRD1_BASE");
        const float outputRegister = dataCurrent("POREG_ECC");
        const float writeBase = dataCurrent("PWR1_BASE");
        const float inputRegister = dataCurrent("PIREG_PRE");
        const float encoder = dataCurrent("PECC_ENC");
        const float decoder = dataCurrent("PECC_DEC");
        const bool registered = memories == 1 && (registersA == 1.0f || registersB == 1.0f);
        const float quarter = static_cast<float>(memories) * 0.25f;
        const float reading = zelm::ratioOrZero((readBase + outputRegister) * out, quarter);
        const float writing = writeBase * in * 4.0f;
        const float registering = registered ? inputRegister * in * 4.0f : 0.0f;
        const float encoding = encodesA == "YES" || encodesB == "YES" ? encoder * in * 4.0f : 0.0f;
        const float decoding =
            decodesA == "YES" || decodesB == "YES" ? zelm::ratioOrZero(out * decoder, quarter) : 0.0f;
        return reading + writing + registering + encoding + decoding;
    }

    // ---- Power ----

    // From the sum of currents to watts. The product of clock and voltage is single, all behind it double.
    double clockAndVoltage(const Key& rail, float volts) const
    {
        const float clockFreq = ClockFreq();
        const float simVoltage = findScaleFactors("SIM_VOLTAGE", rail);
        return clockFreq * simVoltage * zelm::voltageFactor(volts, simVoltage) / 1000.0;
    }

    double computeVccintActivePower() const
    {
        const double factor = clockAndVoltage("VCCINT", Vccint());
        const float narrow = scaleFactor("CLK_PORT_SCALE");
        const float widthA = PortWidthA() < 37 ? narrow : 1.0f;
        const float widthB = PortWidthB() < 37 ? narrow : 1.0f;
        const float readsA = ReadRateA();
        const float readA = Prd1ClkVccintA();
        const float writeA = Pwr1ClkVccintA();
        const float writesA = WriteRateA();
        const float readsB = ReadRateB();
        const float readB = Prd1ClkVccintB();
        const float writeB = Pwr1ClkVccintB();
        const float writesB = WriteRateB();
        const float access = PstbyRwVccint();
        const float active = ActiveRate();
        const float sleep = PslpVccint();
        const float asleep = SleepRateFinal();
        const float standby = PstbyVccint();
        const float standingBy = StbyRate();
        const float dataPath = Prw1DataVccint();
        const int memories = CascadeGroupSize();
        const float registersA = RegCasUsedA();
        const float registersB = RegCasUsedB();
        const float casOut = PcasRdoutVccint();
        const float casIn = PcasInVccint();
        const float pipeIn = PcaspipeInVccint();
        const float pipeOut = PcaspipeRdoutVccint();
        const float sum = readsA * readA * widthA + writeA * writesA * widthA + readsB * readB * widthB +
                          writeB * writesB * widthB + access * active + sleep * asleep + standby * standingBy +
                          2.0f * dataPath;
        const float cascade =
            (2.0f - registersA - registersB) * (casOut + casIn) + (pipeIn + pipeOut) * (registersA + registersB);
        return (sum + (memories > 1 ? cascade : 0.0f)) * factor;
    }

    double computeVccramActivePower() const
    {
        const double factor = clockAndVoltage("VCCRAM", Vccram());
        const float readsA = ReadRateA();
        const float writesA = WriteRateA();
        const float readsB = ReadRateB();
        const float writesB = WriteRateB();
        const float active = ActiveRate();
        const float asleep = SleepRateFinal();
        const float standingBy = StbyRate();
        const float read = ramCurrent("PRD1_BASE");
        const float write = ramCurrent("PWR1_BASE");
        const float standby = ramCurrent("PSTBY");
        const float sleep = PslpVbram();
        const float sum = readsA * read + writesA * write + readsB * read + writesB * write + active * standby +
                          asleep * sleep + standingBy * standby;
        return sum * factor;
    }

    float computeVccintPwrNPlams() const
    {
        const float one = VccintActivePower();
        return one * static_cast<float>(NumPlams());
    }

    float computeVccramPwrNPlams() const
    {
        const float one = VccramActivePower();
        return one * static_cast<float>(NumPlams());
    }
};

#include "framework/ZelmModelBodies.inc"
