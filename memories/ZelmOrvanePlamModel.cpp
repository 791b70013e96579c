#include "memories/ZelmOrvanePlamModel.h"

#include "framework/ZelmModelBlockImpl.h"

template class ZelmModelBlock<ZelmOrvanePlamModel, ZelmOrvanePlamParams, ZelmOrvanePlamData>;

struct ZelmOrvanePlamModel::Port {
    float (ZelmOrvanePlamModel::*enableRate)(Params&, const Data&) const;
    float (ZelmOrvanePlamModel::*writeEnable)(Params&, const Data&) const;
    int (ZelmOrvanePlamModel::*matrixSize)(Params&, const Data&) const;
    float (ZelmOrvanePlamModel::*regCasUsed)(Params&, const Data&) const;
    Params::FloatEnum readRate;
    Params::FloatEnum writeRate;
    Params::FloatEnum readClockCurrent;
    Params::FloatEnum writeClockCurrent;
};

constinit const ZelmOrvanePlamModel::Port ZelmOrvanePlamModel::kPortA{
    .enableRate = &ZelmOrvanePlamModel::getEnableRateA,
    .writeEnable = &ZelmOrvanePlamModel::getWriteEnableA,
    .matrixSize = &ZelmOrvanePlamModel::getMatrixSizeA,
    .regCasUsed = &ZelmOrvanePlamModel::getRegCasUsedA,
    .readRate = Params::READ_RATE_A,
    .writeRate = Params::WRITE_RATE_A,
    .readClockCurrent = Params::PRD1_CLK_VCCINT_A,
    .writeClockCurrent = Params::PWR1_CLK_VCCINT_A,
};
constinit const ZelmOrvanePlamModel::Port ZelmOrvanePlamModel::kPortB{
    .enableRate = &ZelmOrvanePlamModel::getEnableRateB,
    .writeEnable = &ZelmOrvanePlamModel::getWriteEnableB,
    .matrixSize = &ZelmOrvanePlamModel::getMatrixSizeB,
    .regCasUsed = &ZelmOrvanePlamModel::getRegCasUsedB,
    .readRate = Params::READ_RATE_B,
    .writeRate = Params::WRITE_RATE_B,
    .readClockCurrent = Params::PRD1_CLK_VCCINT_B,
    .writeClockCurrent = Params::PWR1_CLK_VCCINT_B,
};

#define ZELM_MODEL ZelmOrvanePlamModel
#define ZELM_CELL_ROWS "memories/ZelmOrvanePlamCells.def"
#include "framework/ZelmCellBodies.inc"

namespace {

float clockCurrent(const ZelmOrvanePlamData& data, std::string_view event)
{
    return data.findDynamicCurrents(event, "VCCINT_CLK");
}

float dataCurrent(const ZelmOrvanePlamData& data, std::string_view event)
{
    return data.findDynamicCurrents(event, "VCCINT_DATA");
}

float ramCurrent(const ZelmOrvanePlamData& data, std::string_view event)
{
    return data.findDynamicCurrents(event, "VCCRAM");
}

float scaleFactor(const ZelmOrvanePlamData& data, std::string_view factor)
{
    return data.findScaleFactors(factor, "");
}

} // namespace

void ZelmOrvanePlamModel::pullOutputs(Params& params, const Data& data) const
{
    calculateVccintPwrNPlams(params, data);
    calculateVccramPwrNPlams(params, data);
    calculateVccintActivePower(params, data);
    calculateVccramActivePower(params, data);
}

// ---- Derived inputs ----

int ZelmOrvanePlamModel::cascadeLatency(Params& params, const Data& data) const
{
    const float memories = static_cast<float>(getCascadeGroupSize(params, data));
    return zelm::truncate(ZelmHelperUtils::ROUNDUP(memories / 3.0f, 0));
}

int ZelmOrvanePlamModel::idleCycles(Params& params, const Data& data) const
{
    const int others = zelm::wrapSubtract(getCascadeGroupSize(params, data), 2);
    return zelm::truncate(ZelmHelperUtils::MAX(10.0f, static_cast<float>(others)));
}

std::string_view ZelmOrvanePlamModel::cascadedSoFar(Params& params, const Data& data) const
{
    return getLatency(params, data) >= 1 ? "YES" : "NO";
}

std::string_view ZelmOrvanePlamModel::eccOfMode(Params& params, const Data& data) const
{
    return viewMode(params, data) == "ECC" ? "YES" : "NO";
}

int ZelmOrvanePlamModel::portWidthFor(int dataWidth)
{
    if (dataWidth < 10)
        return 9;
    if (dataWidth < 19)
        return 18;
    return dataWidth < 37 ? 36 : 72;
}

// A whole number: 0 as soon as there are more memories than registers.
float ZelmOrvanePlamModel::registersPerMemory(Params& params, const Data& data) const
{
    const int latency = getLatency(params, data);
    const int memories = getCascadeGroupSize(params, data);
    return static_cast<float>(zelm::quotientOrZero(latency, memories));
}

// ---- Rates ----

float ZelmOrvanePlamModel::readRate(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.readRate], [&] {
        const float enableRate = (this->*port.enableRate)(params, data);
        const float writeEnable = (this->*port.writeEnable)(params, data);
        const float matrixSize = static_cast<float>((this->*port.matrixSize)(params, data));
        return (enableRate - ZelmHelperUtils::MIN(enableRate, writeEnable)) / ZelmHelperUtils::MAX(1.0f, matrixSize);
    });
}

float ZelmOrvanePlamModel::writeRate(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.writeRate], [&] {
        const float enableRate = (this->*port.enableRate)(params, data);
        const float writeEnable = (this->*port.writeEnable)(params, data);
        const float matrixSize = static_cast<float>((this->*port.matrixSize)(params, data));
        return ZelmHelperUtils::MIN(enableRate, writeEnable) / ZelmHelperUtils::MAX(1.0f, matrixSize);
    });
}

float ZelmOrvanePlamModel::calculateSleepRateFinal(Params& params, const Data& data) const
{
    return once(params[Params::SLEEP_RATE_FINAL], [&] {
        const std::string_view autoSleep = viewAutoSleepEnabled(params, data);
        const float enableRateA = getEnableRateA(params, data);
        const float matrixSizeA = static_cast<float>(getMatrixSizeA(params, data));
        const float enableRateB = getEnableRateB(params, data);
        const float matrixSizeB = static_cast<float>(getMatrixSizeB(params, data));
        const int inactiveCycles = getAvgInactiveCycles(params, data);
        const int sleepLatency = getAutoSleepLatency(params, data);
        const float sleepRate = getSleepRate(params, data);
        if (autoSleep != "YES")
            return sleepRate;
        const float idleA = 1.0f - zelm::ratioOrZero(enableRateA, matrixSizeA);
        const float busyB = zelm::ratioOrZero(enableRateB, matrixSizeB);
        return inactiveCycles < sleepLatency ? 0.0f : ZelmHelperUtils::MAX(idleA - busyB, 0.0f);
    });
}

float ZelmOrvanePlamModel::calculateActiveRate(Params& params, const Data& data) const
{
    return once(params[Params::ACTIVE_RATE], [&] {
        const float asleep = calculateSleepRateFinal(params, data);
        const float readsA = calculateReadRateA(params, data);
        const float writesA = calculateWriteRateA(params, data);
        const float readsB = calculateReadRateB(params, data);
        const float writesB = calculateWriteRateB(params, data);
        return ZelmHelperUtils::MIN(1.0f - asleep, readsA + writesA + readsB + writesB);
    });
}

float ZelmOrvanePlamModel::calculateStbyRate(Params& params, const Data& data) const
{
    return once(params[Params::STBY_RATE], [&] {
        const float active = calculateActiveRate(params, data);
        const float asleep = calculateSleepRateFinal(params, data);
        return ZelmHelperUtils::MAX(0.0f, 1.0f - active - asleep);
    });
}

// ---- Toggle rates, averaged over all inputs (two ports of 72 data and 26 address and control bits) and all outputs
// ----

float ZelmOrvanePlamModel::calculateTrAddr(Params& params, const Data& data) const
{
    return once(params[Params::TR_ADDR], [&] { return getInputToggleRate(params, data); });
}

float ZelmOrvanePlamModel::calculateTriFinal(Params& params, const Data& data) const
{
    return once(params[Params::TRI_FINAL], [&] {
        const float writesA = calculateWriteRateA(params, data);
        const float writesB = calculateWriteRateB(params, data);
        const float address = calculateTrAddr(params, data);
        const float input = getInputToggleRate(params, data);
        const float widthA = static_cast<float>(getDataWidthA(params, data));
        const float widthB = static_cast<float>(getDataWidthB(params, data));
        if (writesA + writesB == 0.0f)
            return 52.0f * address / 196.0f;
        if (writesA == 0.0f)
            return (input * widthB + 52.0f * address) / 196.0f;
        if (writesB == 0.0f)
            return (widthA * input + 52.0f * address) / 196.0f;
        return (widthA * input + input * widthB + 52.0f * address) / 196.0f;
    });
}

float ZelmOrvanePlamModel::calculateTrStdby(Params& params, const Data& data) const
{
    return once(params[Params::TR_STDBY], [&] { return calculateTriFinal(params, data); });
}

float ZelmOrvanePlamModel::calculateTroFinal(Params& params, const Data& data) const
{
    return once(params[Params::TRO_FINAL], [&] {
        const float readsA = calculateReadRateA(params, data);
        const float readsB = calculateReadRateB(params, data);
        const float output = getOutputToggleRate(params, data);
        const int widthA = getDataWidthA(params, data);
        const int widthB = getDataWidthB(params, data);
        if (readsA + readsB == 0.0f)
            return 0.0f;
        if (readsA == 0.0f)
            return static_cast<float>(widthB) * output / 144.0f;
        if (readsB == 0.0f)
            return static_cast<float>(widthA) * output / 144.0f;
        return static_cast<float>(zelm::wrapAdd(widthA, widthB)) * output / 144.0f;
    });
}

// ---- Scale factors ----

float ZelmOrvanePlamModel::calculatePortWidthScale(Params& params, const Data& data) const
{
    return once(params[Params::PORT_WIDTH_SCALE], [&] {
        const bool wideA = getPortWidthA(params, data) > 36;
        const bool wideB = getPortWidthB(params, data) > 36;
        const float noneWide = scaleFactor(data, "PSTBY_PORT_SCALE1");
        const float oneWide = scaleFactor(data, "PSTBY_PORT_SCALE2");
        if (wideA && wideB)
            return 1.0f;
        return wideA || wideB ? oneWide : noneWide;
    });
}

float ZelmOrvanePlamModel::calculateRegCasScaleFactor(Params& params, const Data& data) const
{
    return once(params[Params::REG_CAS_SCALE_FACTOR], [&] {
        const std::string_view cascaded = viewIsCascadedSofar(params, data);
        const float scale = scaleFactor(data, "REG_CAS_SCALE");
        return cascaded == "YES" ? scale : 1.0f;
    });
}

// The workbook asks for the cascade here again, so a factor that a host sets by hand counts in a cascade only.
float ZelmOrvanePlamModel::cascadeScale(Params& params, const Data& data) const
{
    const std::string_view cascaded = viewIsCascadedSofar(params, data);
    const float scale = calculateRegCasScaleFactor(params, data);
    return cascaded == "YES" ? scale : 1.0f;
}

// ---- Clock currents of the ports ----

// Only a memory that isn't part of a matrix has the cascade's register in its input path.
float ZelmOrvanePlamModel::inputRegisterCurrent(const Port& port, Params& params, const Data& data) const
{
    const float registers = (this->*port.regCasUsed)(params, data);
    const int matrixSize = (this->*port.matrixSize)(params, data);
    const float perRegister = clockCurrent(data, "PIREG_PRE");
    return (matrixSize == 1 ? registers : 0.0f) * perRegister;
}

float ZelmOrvanePlamModel::readClockCurrent(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.readClockCurrent], [&] {
        const float base = clockCurrent(data, "PRD1_BASE");
        const float outputRegister = clockCurrent(data, "POREG_ECC");
        const float inputRegister = inputRegisterCurrent(port, params, data);
        return base + outputRegister + inputRegister;
    });
}

float ZelmOrvanePlamModel::writeClockCurrent(const Port& port, Params& params, const Data& data) const
{
    return once(params[port.writeClockCurrent], [&] {
        const float base = clockCurrent(data, "PWR1_BASE");
        const float inputRegister = inputRegisterCurrent(port, params, data);
        return base + inputRegister;
    });
}

// ---- Standby and sleep; the data currents hold for a toggle rate of 25 percent, hence the factor 4 here and below
// ----

float ZelmOrvanePlamModel::standbyCurrent(std::string_view event, Params& params, const Data& data) const
{
    const float widthScale = calculatePortWidthScale(params, data);
    const float clock = clockCurrent(data, event);
    const float perToggle = dataCurrent(data, event);
    const float toggleRate = calculateTrStdby(params, data);
    const float scale = cascadeScale(params, data);
    return widthScale * clock + perToggle * toggleRate * 4.0f * scale;
}

float ZelmOrvanePlamModel::calculatePstbyVccint(Params& params, const Data& data) const
{
    return once(params[Params::PSTBY_VCCINT], [&] { return standbyCurrent("PSTBY", params, data); });
}

float ZelmOrvanePlamModel::calculatePstbypgVccint(Params& params, const Data& data) const
{
    return once(params[Params::PSTBYPG_VCCINT], [&] { return standbyCurrent("PSTBYPG", params, data); });
}

float ZelmOrvanePlamModel::calculatePstbyRwVccint(Params& params, const Data& data) const
{
    return once(params[Params::PSTBY_RW_VCCINT], [&] {
        const float widthScale = calculatePortWidthScale(params, data);
        const float clock = clockCurrent(data, "PSTBY");
        const float scale = cascadeScale(params, data);
        const float toggleRate = calculateTriFinal(params, data);
        const float perToggle = dataCurrent(data, "PSTBY");
        return widthScale * clock + scale * toggleRate * 4.0f * perToggle;
    });
}

// Of an idle period's cycles two fall asleep, one stands by and the rest is power-gated.
float ZelmOrvanePlamModel::calculatePslpVccint(Params& params, const Data& data) const
{
    return once(params[Params::PSLP_VCCINT], [&] {
        const float cycles = static_cast<float>(getAvgInactiveCycles(params, data));
        const float transition = dataCurrent(data, "PSLPT");
        const float standby = calculatePstbyVccint(params, data);
        const float gated = calculatePstbypgVccint(params, data);
        const float falling = zelm::ratioOrZero(2.0f, cycles);
        const float waiting = zelm::ratioOrZero(1.0f, cycles);
        const float sleeping = 1.0f - zelm::ratioOrZero(3.0f, cycles);
        return (transition + standby) * falling + standby * waiting + gated * sleeping;
    });
}

// The gated memory array draws nothing: no third term.
float ZelmOrvanePlamModel::calculatePslpVbram(Params& params, const Data& data) const
{
    return once(params[Params::PSLP_VBRAM], [&] {
        const float cycles = static_cast<float>(getAvgInactiveCycles(params, data));
        const float standby = ramCurrent(data, "PSTBY");
        const float transition = ramCurrent(data, "PSLPT");
        const float falling = zelm::ratioOrZero(2.0f, cycles);
        const float waiting = zelm::ratioOrZero(1.0f, cycles);
        return (standby + transition) * falling + standby * waiting;
    });
}

// ---- Cascade ----

float ZelmOrvanePlamModel::calculatePcaspipeInVccint(Params& params, const Data& data) const
{
    return once(params[Params::PCASPIPE_IN_VCCINT], [&] {
        const float clock = clockCurrent(data, "PCASPIPE_IN");
        const float toggleRate = calculateTriFinal(params, data);
        const float perToggle = dataCurrent(data, "PCASPIPE_IN");
        return clock + toggleRate * perToggle * 4.0f;
    });
}

float ZelmOrvanePlamModel::calculatePcaspipeRdoutVccint(Params& params, const Data& data) const
{
    return once(params[Params::PCASPIPE_RDOUT_VCCINT], [&] {
        const float clock = clockCurrent(data, "PCASPIPE_RDOUT");
        const float toggleRate = calculateTroFinal(params, data);
        const float perToggle = dataCurrent(data, "PCASPIPE_RDOUT");
        return clock + toggleRate * perToggle * 4.0f;
    });
}

float ZelmOrvanePlamModel::calculatePcasInVccint(Params& params, const Data& data) const
{
    return once(params[Params::PCAS_IN_VCCINT],
                [&] { return calculateTriFinal(params, data) * dataCurrent(data, "PCAS_IN") * 4.0f; });
}

float ZelmOrvanePlamModel::calculatePcasRdoutVccint(Params& params, const Data& data) const
{
    return once(params[Params::PCAS_RDOUT_VCCINT],
                [&] { return calculateTroFinal(params, data) * dataCurrent(data, "PCAS_RDOUT") * 4.0f; });
}

// ---- Data path ----

float ZelmOrvanePlamModel::calculatePrw1DataVccint(Params& params, const Data& data) const
{
    return once(params[Params::PRW1_DATA_VCCINT], [&] {
        const int memories = getCascadeGroupSize(params, data);
        const float in = calculateTriFinal(params, data);
        const float out = calculateTroFinal(params, data);
        const float registersA = getRegCasUsedA(params, data);
        const float registersB = getRegCasUsedB(params, data);
        const std::string_view encodesA = viewEccWrEnableA(params, data);
        const std::string_view encodesB = viewEccWrEnableB(params, data);
        const std::string_view decodesA = viewEccRdEnableA(params, data);
        const std::string_view decodesB = viewEccRdEnableB(params, data);
        const float readBase = dataCurrent(data, "PRD1_BASE");
        const float outputRegister = dataCurrent(data, "POREG_ECC");
        const float writeBase = dataCurrent(data, "PWR1_BASE");
        const float inputRegister = dataCurrent(data, "PIREG_PRE");
        const float encoder = dataCurrent(data, "PECC_ENC");
        const float decoder = dataCurrent(data, "PECC_DEC");
        const bool registered = memories == 1 && (registersA == 1.0f || registersB == 1.0f);
        const float quarter = static_cast<float>(memories) * 0.25f;
        const float reading = zelm::ratioOrZero((readBase + outputRegister) * out, quarter);
        const float writing = writeBase * in * 4.0f;
        const float registering = registered ? inputRegister * in * 4.0f : 0.0f;
        const float encoding = encodesA == "YES" || encodesB == "YES" ? encoder * in * 4.0f : 0.0f;
        const float decoding =
            decodesA == "YES" || decodesB == "YES" ? zelm::ratioOrZero(out * decoder, quarter) : 0.0f;
        return reading + writing + registering + encoding + decoding;
    });
}

// ---- Power ----

// From the sum of currents to watts. The product of clock and voltage is single, all behind it double.
double ZelmOrvanePlamModel::clockAndVoltage(std::string_view rail, float volts, Params& params, const Data& data) const
{
    const float clockFreq = getClockFreq(params, data);
    const float simVoltage = data.findScaleFactors("SIM_VOLTAGE", rail);
    return clockFreq * simVoltage * zelm::voltageFactor(volts, simVoltage) / 1000.0;
}

float ZelmOrvanePlamModel::calculateVccintActivePower(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_ACTIVE_POWER], [&] {
        const double factor = clockAndVoltage("VCCINT", getVccint(params, data), params, data);
        const float narrow = scaleFactor(data, "CLK_PORT_SCALE");
        const float widthA = getPortWidthA(params, data) < 37 ? narrow : 1.0f;
        const float widthB = getPortWidthB(params, data) < 37 ? narrow : 1.0f;
        const float readsA = calculateReadRateA(params, data);
        const float readA = calculatePrd1ClkVccintA(params, data);
        const float writeA = calculatePwr1ClkVccintA(params, data);
        const float writesA = calculateWriteRateA(params, data);
        const float readsB = calculateReadRateB(params, data);
        const float readB = calculatePrd1ClkVccintB(params, data);
        const float writeB = calculatePwr1ClkVccintB(params, data);
        const float writesB = calculateWriteRateB(params, data);
        const float access = calculatePstbyRwVccint(params, data);
        const float active = calculateActiveRate(params, data);
        const float sleep = calculatePslpVccint(params, data);
        const float asleep = calculateSleepRateFinal(params, data);
        const float standby = calculatePstbyVccint(params, data);
        const float standingBy = calculateStbyRate(params, data);
        const float dataPath = calculatePrw1DataVccint(params, data);
        const int memories = getCascadeGroupSize(params, data);
        const float registersA = getRegCasUsedA(params, data);
        const float registersB = getRegCasUsedB(params, data);
        const float casOut = calculatePcasRdoutVccint(params, data);
        const float casIn = calculatePcasInVccint(params, data);
        const float pipeIn = calculatePcaspipeInVccint(params, data);
        const float pipeOut = calculatePcaspipeRdoutVccint(params, data);
        const float sum = readsA * readA * widthA + writeA * writesA * widthA + readsB * readB * widthB +
                          writeB * writesB * widthB + access * active + sleep * asleep + standby * standingBy +
                          2.0f * dataPath;
        const float cascade =
            (2.0f - registersA - registersB) * (casOut + casIn) + (pipeIn + pipeOut) * (registersA + registersB);
        return (sum + (memories > 1 ? cascade : 0.0f)) * factor;
    });
}

float ZelmOrvanePlamModel::calculateVccramActivePower(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_ACTIVE_POWER], [&] {
        const double factor = clockAndVoltage("VCCRAM", getVccram(params, data), params, data);
        const float readsA = calculateReadRateA(params, data);
        const float writesA = calculateWriteRateA(params, data);
        const float readsB = calculateReadRateB(params, data);
        const float writesB = calculateWriteRateB(params, data);
        const float active = calculateActiveRate(params, data);
        const float asleep = calculateSleepRateFinal(params, data);
        const float standingBy = calculateStbyRate(params, data);
        const float read = ramCurrent(data, "PRD1_BASE");
        const float write = ramCurrent(data, "PWR1_BASE");
        const float standby = ramCurrent(data, "PSTBY");
        const float sleep = calculatePslpVbram(params, data);
        const float sum = readsA * read + writesA * write + readsB * read + writesB * write + active * standby +
                          asleep * sleep + standingBy * standby;
        return sum * factor;
    });
}

float ZelmOrvanePlamModel::calculateVccintPwrNPlams(Params& params, const Data& data) const
{
    return once(params[Params::VCCINT_PWR_N_PLAMS], [&] {
        const float one = calculateVccintActivePower(params, data);
        return one * static_cast<float>(getNumPlams(params, data));
    });
}

float ZelmOrvanePlamModel::calculateVccramPwrNPlams(Params& params, const Data& data) const
{
    return once(params[Params::VCCRAM_PWR_N_PLAMS], [&] {
        const float one = calculateVccramActivePower(params, data);
        return one * static_cast<float>(getNumPlams(params, data));
    });
}
