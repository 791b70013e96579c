#include "dsp/ZelmOrvaneDspFp32Model.h"

#include "dsp/ZelmDspSheet.h"
#include "framework/ZelmModelBlockImpl.h"

#define ZELM_MODEL ZelmOrvaneDspFp32Model
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspFp32Cells.def"
#define ZELM_TABLE_ROWS "dsp/ZelmOrvaneDspFp32Tables.def"

namespace {

using enum zelm::DspComponent;

enum Mode : int {
    multAdd,
    multAddNofpmpipereg,
    multOnly,
    multOnlyNofpmpipereg,
    addOnly,
    b16MultAdd,
    b16MultAddNofpmpipereg,
    b16Mult,
    b16MultNofpmpipereg
};
enum Group : std::size_t { product, sum, product16, sum16, adderAlone };
constexpr std::array<zelm::DspMode, 9> kModes{{{"MULT_ADD", sum},
                                               {"MULT_ADD_NOFPMPIPEREG", sum},
                                               {"MULT_ONLY", product},
                                               {"MULT_ONLY_NOFPMPIPEREG", product},
                                               {"ADD_ONLY", adderAlone},
                                               {"B16_MULT_ADD", sum16},
                                               {"B16_MULT_ADD_NOFPMPIPEREG", sum16},
                                               {"B16_MULT", product16},
                                               {"B16_MULT_NOFPMPIPEREG", product16}}};

// A format of the factors. The 16-bit one changes more of its bits at a time, and computes in double.
struct Single {
    using Number = float;
    static constexpr Number exponent = 8.0f, mantissa = 23.0f, multBits = 23.0f;
};
struct B16 {
    using Number = double;
    static constexpr Number exponent = 12.8, mantissa = 52.9;
    static constexpr Number multBits = 24.0; // kept: the multiplexers divide by 23
};

// Toggle rates of a number's fields.
struct Fields {
    float sign, exponent, mantissa;

    /// Weighed by the bits that change.
    template <class Format>
    typename Format::Number bits() const
    {
        return sign + Format::exponent * exponent + Format::mantissa * mantissa;
    }
    // kept: the products without sum weigh B's exponent where its mantissa would stand
    float bitsWithoutMantissa() const
    {
        return sign + 8.0f * exponent + 23.0f * exponent;
    }
};

/// Three streams that meet: the mean of all and of the busiest.
float meeting(float x, float y, float z)
{
    return ZelmHelperUtils::AVERAGE(x, y, z, ZelmHelperUtils::MAX(x, y, z));
}

/// A twice, B and D.
template <class Format, class Number = typename Format::Number>
float inputBits(const Fields& a, Number bBits, Number dBits)
{
    constexpr Number exponentBits = 2 * Format::exponent;
    constexpr Number mantissaBits = 2 * Format::mantissa;
    const Number bits = 2.0f * a.sign + exponentBits * a.exponent + mantissaBits * a.mantissa + bBits + dBits;
    return ZelmHelperUtils::MIN(0.5f, static_cast<float>(bits * Number{0.0078125f}));
}

/// The output beside A and the busier of B and D.
template <class Format, class Number = typename Format::Number>
float cascadeBits(float out, Number aBits, Number bBits, Number dBits)
{
    const Number busier = ZelmHelperUtils::MAX(static_cast<float>(bBits), static_cast<float>(dBits));
    return static_cast<float>((out * 32.0f + aBits + busier) / 96);
}

} // namespace

struct ZelmOrvaneDspFp32Model::Sheet : ZelmDspSheet<ZelmOrvaneDspFp32Model> {
#include "framework/ZelmAccessors.inc"

    static constexpr Key familyKey = "FP32";
    static constexpr auto modes = kModes;
#include "dsp/ZelmDspCells.inc"

    static constexpr auto components = zelm::dspComponents(complex, cascDelay);
    static constexpr auto aggregate = zelm::dspAggregate({{complex, 1.0f}, {cascDelay, 1.0f}});

    zelm::Composed computeDspUsage() const
    {
        const Text b16 = B16Used();
        const Text multUsed = MultUsed();
        const Text addUsed = AddUsed();
        const Text pipeline = FpmpiperegUsed();
        return zelm::Composed{"B16_", b16, "_MULT_", multUsed, "_ADD_", addUsed, "_FPMPIPEREG_", pipeline};
    }

    // ---- Measured currents: the tables know no usage level here, and have no cells of their own ----

    float measured(Component component, const Key& measure) const
    {
        const Key& mode = OperationalMode();
        return findDynamicData(familyKey, mode, zelm::kDspKeys(component), measure);
    }

    float dynamicOf(Component component) const
    {
        return dynamicCurrent(component);
    }

    float offOf(Component component) const
    {
        return offCurrent(component);
    }

    // ---- Inputs ----

    Fields a() const
    {
        return {ASignTr(), AExpTr(), AManTr()};
    }

    Fields b() const
    {
        return {BSignTr(), BExpTr(), BManTr()};
    }

    Fields d() const
    {
        return {DSignTr(), DExpTr(), DManTr()};
    }

    float meetingOf(float Fields::*field) const
    {
        const Fields fieldsOfA = a();
        const Fields fieldsOfB = b();
        const Fields fieldsOfD = d();
        return meeting(fieldsOfA.*field, fieldsOfB.*field, fieldsOfD.*field);
    }

    float exponents() const
    {
        return meetingOf(&Fields::exponent);
    }

    float mantissas() const
    {
        return meetingOf(&Fields::mantissa);
    }

    // ---- Toggle formulas ----

    float abDataCapped() const
    {
        return MIN(0.5f, AbDataTr());
    }

    float inputsOfAdder() const
    {
        return MIN(0.5f, d().bits<Single>() * 0.03125f);
    }

    float inputsOfProduct() const
    {
        const Fields fieldsOfA = a();
        const float bBits = b().bitsWithoutMantissa();
        const float dBits = d().bits<Single>();
        return inputBits<Single>(fieldsOfA, bBits, dBits);
    }

    template <class Format, class Number = typename Format::Number>
    float inputs() const
    {
        const Fields fieldsOfA = a();
        const Number bBits = b().bits<Format>();
        const Number dBits = d().bits<Format>();
        return inputBits<Format>(fieldsOfA, bBits, dBits);
    }

    template <class Format, class Number = typename Format::Number>
    float pathOfProduct() const
    {
        const Number exponent = exponents();
        const Number inmode = FpinmodeTr();
        return MIN(0.5f, static_cast<float>((exponent * Format::exponent + inmode) / 9));
    }

    // kept: the two sums differ in the order of their terms, and so in rounding
    float pathOfSum() const
    {
        const float c = CTr();
        const float exponent = exponents();
        const float inmode = FpinmodeTr();
        return MIN(0.5f, (32.0f * c + exponent * 8.0f + inmode) / 41.0f);
    }

    float pathOfSum16() const
    {
        const double exponent = exponents();
        const float c = CTr();
        const double inmode = FpinmodeTr();
        return MIN(0.5f, static_cast<float>((exponent * 12.8 + 32.0f * c + inmode) / 41.0));
    }

    float aluInputsOfAdder() const
    {
        const float c = CDataTr();
        const float out = OutputTr();
        return MIN(0.5f, AVERAGE(c, out));
    }

    template <class Format, class Number = typename Format::Number>
    float aluInputs() const
    {
        const Number mantissa = mantissas();
        const Number inmode = FpinmodeTr();
        return MIN(0.5f, static_cast<float>((mantissa * Format::mantissa + inmode) / 23));
    }

    template <class Format, class Number = typename Format::Number>
    float preadder() const
    {
        const Number exponent = exponents();
        const Number inmode = FpinmodeTr();
        return MIN(0.5f, static_cast<float>((exponent * Format::exponent + inmode) * Number{0.125f}));
    }

    template <class Format, class Number = typename Format::Number>
    float multiplier() const
    {
        const Number mantissa = mantissas();
        const Number inmode = FpinmodeTr();
        const float out = FpmOutTr();
        return MIN(0.5f, AVERAGE(static_cast<float>((mantissa * Format::mantissa + inmode) / Format::multBits), out));
    }

    template <class Format, class Number = typename Format::Number>
    float exponentPath() const
    {
        const Number exponent = exponents();
        const Number sign = meetingOf(&Fields::sign);
        const Fields fieldsOfB = b();
        const Fields fieldsOfD = d();
        // kept: 0.5 stands where A's mantissa would
        const Number mantissa = meeting(0.5f, fieldsOfB.mantissa, fieldsOfD.mantissa);
        const Number inmode = FpinmodeTr();
        const Number bits = exponent * Format::exponent + sign + mantissa * Format::mantissa + inmode;
        return MIN(0.5f, static_cast<float>(bits * Number{0.03125f}));
    }

    float bothOut() const
    {
        const float adder = FpaOutTr();
        const float ofMultiplier = FpmOutTr();
        return AVERAGE(adder, ofMultiplier);
    }

    float complexStage() const
    {
        const float ab = AbDataTr();
        const float path = PreaddDataTr();
        return AVERAGE(ab, path);
    }

    float cascadeOfProduct() const
    {
        const float out = bothOut();
        const float aBits = a().bits<Single>();
        const float bBits = b().bitsWithoutMantissa();
        const float dBits = d().bits<Single>();
        return cascadeBits<Single>(out, aBits, bBits, dBits);
    }

    template <class Format, class Number = typename Format::Number>
    float cascadeBehind(float out) const
    {
        const Number aBits = a().bits<Format>();
        const Number bBits = b().bits<Format>();
        const Number dBits = d().bits<Format>();
        return cascadeBits<Format>(out, aBits, bBits, dBits);
    }

    float cascadeOfProduct16() const
    {
        return cascadeBehind<B16>(FpmOutTr());
    }

    template <class Format>
    float cascade() const
    {
        return cascadeBehind<Format>(bothOut());
    }

    float ownRate(Component component, std::size_t group) const
    {
        using S = Sheet;
        // clang-format off
        static constexpr auto toggles = zelm::dspToggles<S>({
            // component product                    sum                       product16               sum16                  adderAlone
            {abData,     &S::inputsOfProduct,       &S::inputs<Single>,       &S::inputs<B16>,        &S::inputs<B16>,       &S::inputsOfAdder},
            {preaddData, &S::pathOfProduct<Single>, &S::pathOfSum,            &S::pathOfProduct<B16>, &S::pathOfSum16,       &S::AbDataTr},
            {cData,      &S::PreaddDataTr,          &S::CTr,                  &S::PreaddDataTr,       &S::CTr,               &S::CTr},
            {alureg,     &S::AbDataTr,              &S::FpopmodeTr,           &S::AbDataTr,           &S::FpopmodeTr,        &S::FpopmodeTr},
            {alumux,     &S::aluInputs<Single>,     &S::aluInputs<Single>,    &S::aluInputs<B16>,     &S::aluInputs<B16>,    &S::aluInputsOfAdder},
            {aluadd,     &S::AlumuxTr,              &S::AlumuxTr,             &S::AlumuxTr,           &S::AlumuxTr,          &S::AluregTr},
            {preadd,     &S::preadder<Single>,      &S::preadder<Single>,     &S::preadder<B16>,      &S::preadder<B16>,     &S::abDataCapped},
            {mult,       &S::multiplier<Single>,    &S::multiplier<Single>,   &S::multiplier<B16>,    &S::multiplier<B16>,   &S::abDataCapped},
            {mData,      &S::MultTr},
            {patdet,     &S::OutputTr},
            {fpExp,      &S::exponentPath<Single>,  &S::exponentPath<Single>, &S::exponentPath<B16>,  &S::exponentPath<B16>, &S::abDataCapped},
            {fpAdd,      &S::AbDataTr,              &S::FpaOutTr,             &S::AluregTr,           &S::FpaOutTr,          &S::FpaOutTr},
            {fpNorm,     &S::FpmOutTr,              &S::FpmOutTr,             &S::FpmOutTr,           &S::FpmOutTr,          &S::AbDataTr},
            {output,     &S::FpmOutTr,              &S::bothOut,              &S::FpmOutTr,           &S::bothOut,           &S::FpaOutTr},
            {optinv,     &S::AluregTr},
            {complex,    &S::PreaddDataTr,          &S::complexStage,         &S::complexStage,       &S::complexStage,      &S::complexStage},
            {cascDelay,  &S::cascadeOfProduct,      &S::cascade<Single>,      &S::cascadeOfProduct16, &S::cascade<B16>,      &S::FpaOutTr},
        });
        // clang-format on
        return (this->*toggles(component)[group])();
    }
};

#include "framework/ZelmModelBodies.inc"
