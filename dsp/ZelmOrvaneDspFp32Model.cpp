#include "dsp/ZelmOrvaneDspFp32Model.h"

#include "dsp/ZelmDspModelImpl.h"

template class ZelmModelBlock<ZelmOrvaneDspFp32Model, ZelmOrvaneDspFp32Params, ZelmOrvaneDspFp32Data>;

#define ZELM_MODEL ZelmOrvaneDspFp32Model
#define ZELM_CELL_ROWS "dsp/ZelmOrvaneDspFp32Cells.def"

namespace {

using Model = ZelmOrvaneDspFp32Model;
using Params = Model::Params;
using Data = Model::Data;

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

// The toggle formulas; spreadsheet functions by their bare names.
struct Toggles : ZelmHelperUtils {
    static Fields a(const Model& model, Params& params, const Data& data)
    {
        return {model.getASignTr(params, data), model.getAExpTr(params, data), model.getAManTr(params, data)};
    }

    static Fields b(const Model& model, Params& params, const Data& data)
    {
        return {model.getBSignTr(params, data), model.getBExpTr(params, data), model.getBManTr(params, data)};
    }

    static Fields d(const Model& model, Params& params, const Data& data)
    {
        return {model.getDSignTr(params, data), model.getDExpTr(params, data), model.getDManTr(params, data)};
    }

    /// Three streams that meet: the mean of all and of the busiest.
    static float meeting(float x, float y, float z)
    {
        return AVERAGE(x, y, z, MAX(x, y, z));
    }

    static float signs(const Model& model, Params& params, const Data& data)
    {
        return meeting(a(model, params, data).sign, b(model, params, data).sign, d(model, params, data).sign);
    }

    static float exponents(const Model& model, Params& params, const Data& data)
    {
        return meeting(a(model, params, data).exponent, b(model, params, data).exponent,
                       d(model, params, data).exponent);
    }

    static float mantissas(const Model& model, Params& params, const Data& data)
    {
        return meeting(a(model, params, data).mantissa, b(model, params, data).mantissa,
                       d(model, params, data).mantissa);
    }

    // ---- Rates that a component takes over ----

    static float abDataRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateAbDataTr(params, data);
    }

    static float abDataRateCapped(const Model& model, Params& params, const Data& data)
    {
        return MIN(0.5f, model.calculateAbDataTr(params, data));
    }

    static float preaddDataRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculatePreaddDataTr(params, data);
    }

    static float aluregRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateAluregTr(params, data);
    }

    static float alumuxRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateAlumuxTr(params, data);
    }

    static float multRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateMultTr(params, data);
    }

    static float outputRate(const Model& model, Params& params, const Data& data)
    {
        return model.calculateOutputTr(params, data);
    }

    static float inputC(const Model& model, Params& params, const Data& data)
    {
        return model.getCTr(params, data);
    }

    static float opmode(const Model& model, Params& params, const Data& data)
    {
        return model.getFpopmodeTr(params, data);
    }

    static float adderOut(const Model& model, Params& params, const Data& data)
    {
        return model.getFpaOutTr(params, data);
    }

    static float multOut(const Model& model, Params& params, const Data& data)
    {
        return model.getFpmOutTr(params, data);
    }

    static float bothOut(const Model& model, Params& params, const Data& data)
    {
        const float adder = model.getFpaOutTr(params, data);
        const float multiplier = model.getFpmOutTr(params, data);
        return AVERAGE(adder, multiplier);
    }

    // ---- Formulas named by their component ----

    static float abDataOfAdder(const Model& model, Params& params, const Data& data)
    {
        return MIN(0.5f, d(model, params, data).bits<Single>() * 0.03125f);
    }

    template <class Format, class Number = typename Format::Number>
    static float abDataOf(const Fields& doubled, Number bBits, Number dBits)
    {
        constexpr Number exponentBits = 2 * Format::exponent;
        constexpr Number mantissaBits = 2 * Format::mantissa;
        const Number bits =
            2.0f * doubled.sign + exponentBits * doubled.exponent + mantissaBits * doubled.mantissa + bBits + dBits;
        return MIN(0.5f, static_cast<float>(bits * Number{0.0078125f}));
    }

    static float abDataOfProduct(const Model& model, Params& params, const Data& data)
    {
        return abDataOf<Single>(a(model, params, data), b(model, params, data).bitsWithoutMantissa(),
                                d(model, params, data).bits<Single>());
    }

    template <class Format>
    static float abData(const Model& model, Params& params, const Data& data)
    {
        return abDataOf<Format>(a(model, params, data), b(model, params, data).template bits<Format>(),
                                d(model, params, data).template bits<Format>());
    }

    template <class Format, class Number = typename Format::Number>
    static float preaddDataOfProduct(const Model& model, Params& params, const Data& data)
    {
        const Number exponent = exponents(model, params, data);
        const Number inmode = model.getFpinmodeTr(params, data);
        return MIN(0.5f, static_cast<float>((exponent * Format::exponent + inmode) / 9));
    }

    // kept: the two sums differ in the order of their terms, and so in rounding
    static float preaddDataOfSum(const Model& model, Params& params, const Data& data)
    {
        const float c = model.getCTr(params, data);
        const float exponent = exponents(model, params, data);
        const float inmode = model.getFpinmodeTr(params, data);
        return MIN(0.5f, (32.0f * c + exponent * 8.0f + inmode) / 41.0f);
    }

    static float preaddDataOfSum16(const Model& model, Params& params, const Data& data)
    {
        const double exponent = exponents(model, params, data);
        const float c = model.getCTr(params, data);
        const double inmode = model.getFpinmodeTr(params, data);
        return MIN(0.5f, static_cast<float>((exponent * 12.8 + 32.0f * c + inmode) / 41.0));
    }

    static float alumuxOfAdder(const Model& model, Params& params, const Data& data)
    {
        const float c = model.calculateCDataTr(params, data);
        const float out = model.calculateOutputTr(params, data);
        return MIN(0.5f, AVERAGE(c, out));
    }

    template <class Format, class Number = typename Format::Number>
    static float alumux(const Model& model, Params& params, const Data& data)
    {
        const Number mantissa = mantissas(model, params, data);
        const Number inmode = model.getFpinmodeTr(params, data);
        return MIN(0.5f, static_cast<float>((mantissa * Format::mantissa + inmode) / 23));
    }

    template <class Format, class Number = typename Format::Number>
    static float preadd(const Model& model, Params& params, const Data& data)
    {
        const Number exponent = exponents(model, params, data);
        const Number inmode = model.getFpinmodeTr(params, data);
        return MIN(0.5f, static_cast<float>((exponent * Format::exponent + inmode) * Number{0.125f}));
    }

    template <class Format, class Number = typename Format::Number>
    static float mult(const Model& model, Params& params, const Data& data)
    {
        const Number mantissa = mantissas(model, params, data);
        const Number inmode = model.getFpinmodeTr(params, data);
        const float out = model.getFpmOutTr(params, data);
        return MIN(0.5f, AVERAGE(static_cast<float>((mantissa * Format::mantissa + inmode) / Format::multBits), out));
    }

    template <class Format, class Number = typename Format::Number>
    static float fpExp(const Model& model, Params& params, const Data& data)
    {
        const Number exponent = exponents(model, params, data);
        const Number sign = signs(model, params, data);
        // kept: 0.5 stands where A's mantissa would
        const Number mantissa = meeting(0.5f, b(model, params, data).mantissa, d(model, params, data).mantissa);
        const Number inmode = model.getFpinmodeTr(params, data);
        const Number bits = exponent * Format::exponent + sign + mantissa * Format::mantissa + inmode;
        return MIN(0.5f, static_cast<float>(bits * Number{0.03125f}));
    }

    static float complex(const Model& model, Params& params, const Data& data)
    {
        const float ab = model.calculateAbDataTr(params, data);
        const float path = model.calculatePreaddDataTr(params, data);
        return AVERAGE(ab, path);
    }

    /// The output beside A and the busier of B and D.
    template <class Format, class Number = typename Format::Number>
    static float cascadeOf(float out, Number aBits, Number bBits, Number dBits)
    {
        const Number busier = MAX(static_cast<float>(bBits), static_cast<float>(dBits));
        return static_cast<float>((out * 32.0f + aBits + busier) / 96);
    }

    static float cascadeOfProduct(const Model& model, Params& params, const Data& data)
    {
        return cascadeOf<Single>(bothOut(model, params, data), a(model, params, data).bits<Single>(),
                                 b(model, params, data).bitsWithoutMantissa(), d(model, params, data).bits<Single>());
    }

    static float cascadeOfProduct16(const Model& model, Params& params, const Data& data)
    {
        return cascadeOf<B16>(multOut(model, params, data), a(model, params, data).bits<B16>(),
                              b(model, params, data).bits<B16>(), d(model, params, data).bits<B16>());
    }

    template <class Format>
    static float cascade(const Model& model, Params& params, const Data& data)
    {
        return cascadeOf<Format>(bothOut(model, params, data), a(model, params, data).template bits<Format>(),
                                 b(model, params, data).template bits<Format>(),
                                 d(model, params, data).template bits<Format>());
    }
};

} // namespace

struct ZelmOrvaneDspFp32Model::Slice {
    using T = Toggles;
    enum Group { product, sum, product16, sum16, adderAlone };

    static constexpr std::string_view family = "FP32";
    static constexpr std::array<zelm::DspMode, 9> modes{{{"MULT_ADD", sum},
                                                         {"MULT_ADD_NOFPMPIPEREG", sum},
                                                         {"MULT_ONLY", product},
                                                         {"MULT_ONLY_NOFPMPIPEREG", product},
                                                         {"ADD_ONLY", adderAlone},
                                                         {"B16_MULT_ADD", sum16},
                                                         {"B16_MULT_ADD_NOFPMPIPEREG", sum16},
                                                         {"B16_MULT", product16},
                                                         {"B16_MULT_NOFPMPIPEREG", product16}}};
    static constexpr auto components = zelm::dspComponents(complex, cascDelay);
    static constexpr auto aggregate = zelm::dspAggregate({{complex, 1.0f}, {cascDelay, 1.0f}});
    // clang-format off
    static constexpr auto toggles = zelm::dspToggles<Model, 5>({
        // component product                         sum                 product16                    sum16                 adderAlone
        {abData,     T::abDataOfProduct,             T::abData<Single>,  T::abData<B16>,              T::abData<B16>,       T::abDataOfAdder},
        {preaddData, T::preaddDataOfProduct<Single>, T::preaddDataOfSum, T::preaddDataOfProduct<B16>, T::preaddDataOfSum16, T::abDataRate},
        {cData,      T::preaddDataRate,              T::inputC,          T::preaddDataRate,           T::inputC,            T::inputC},
        {alureg,     T::abDataRate,                  T::opmode,          T::abDataRate,               T::opmode,            T::opmode},
        {alumux,     T::alumux<Single>,              T::alumux<Single>,  T::alumux<B16>,              T::alumux<B16>,       T::alumuxOfAdder},
        {aluadd,     T::alumuxRate,                  T::alumuxRate,      T::alumuxRate,               T::alumuxRate,        T::aluregRate},
        {preadd,     T::preadd<Single>,              T::preadd<Single>,  T::preadd<B16>,              T::preadd<B16>,       T::abDataRateCapped},
        {mult,       T::mult<Single>,                T::mult<Single>,    T::mult<B16>,                T::mult<B16>,         T::abDataRateCapped},
        {mData,      T::multRate},
        {patdet,     T::outputRate},
        {fpExp,      T::fpExp<Single>,               T::fpExp<Single>,   T::fpExp<B16>,               T::fpExp<B16>,        T::abDataRateCapped},
        {fpAdd,      T::abDataRate,                  T::adderOut,        T::aluregRate,               T::adderOut,          T::adderOut},
        {fpNorm,     T::multOut,                     T::multOut,         T::multOut,                  T::multOut,           T::abDataRate},
        {output,     T::multOut,                     T::bothOut,         T::multOut,                  T::bothOut,           T::adderOut},
        {optinv,     T::aluregRate},
        {complex,    T::preaddDataRate,              T::complex,         T::complex,                  T::complex,           T::complex},
        {cascDelay,  T::cascadeOfProduct,            T::cascade<Single>, T::cascadeOfProduct16,       T::cascade<B16>,      T::adderOut},
    });
    // clang-format on
#include "dsp/ZelmDspCells.inc"
};

#include "framework/ZelmCellBodies.inc"

std::string_view ZelmOrvaneDspFp32Model::viewDspUsage(Params& params, const Data& data) const
{
    return once(params[Params::DSP_USAGE], [&] {
        const std::string_view b16 = viewB16Used(params, data);
        const std::string_view multUsed = viewMultUsed(params, data);
        const std::string_view addUsed = viewAddUsed(params, data);
        const std::string_view pipeline = viewFpmpiperegUsed(params, data);
        return zelm::dspKey({"B16_", b16, "_MULT_", multUsed, "_ADD_", addUsed, "_FPMPIPEREG_", pipeline});
    });
}

float ZelmOrvaneDspFp32Model::dynamicCurrent(Component component, Params& params, const Data& data) const
{
    const std::string_view mode = viewOperationalMode(params, data);
    return data.findDynamicData(Slice::family, mode, zelm::keyOf(component), "DYNAMIC_MA_MHZ");
}

float ZelmOrvaneDspFp32Model::offCurrent(Component component, Params& params, const Data& data) const
{
    const std::string_view mode = viewOperationalMode(params, data);
    return data.findDynamicData(Slice::family, mode, zelm::keyOf(component), "OFF_CURRENT_MA");
}
