#include "framework/ZelmException.h"
#include "framework/ZelmOrvaneSignalModel.h"

#include "support/Bits.h"

#include <stdexcept>
#include <thread>
#include <type_traits>
#include <unordered_map>

namespace zelm::test::paramBlockTest {

using Params = ZelmOrvaneSignalParams;

TEST(ParamBlock, AFreshBlockHoldsTheSentinels)
{
    const Params params;
    for (int i = 0; i < Params::LastInt; ++i)
        EXPECT_EQ(params[static_cast<Params::IntEnum>(i)], 0x7fffffff);
    for (int i = 0; i < Params::LastFloat; ++i)
        EXPECT_THAT(params[static_cast<Params::FloatEnum>(i)], IsBits(3.4028235e38f));
    for (int i = 0; i < Params::LastString; ++i)
        EXPECT_EQ(params[static_cast<Params::StringEnum>(i)], "UninitializedString");
    EXPECT_EQ(params.className(), "ZelmOrvaneSignalParams");
}

TEST(ParamBlock, AnIndexOutsideIsRefusedWithBothNumbers)
{
    Params params;
    const Params& fixed = params;
    const auto expectText = [](auto access, const char* text) {
        try {
            access();
            FAIL() << "no exception, expected " << text;
        } catch (const std::out_of_range& error) {
            EXPECT_STREQ(error.what(), text);
        }
    };
    expectText([&] { params[Params::LastFloat] = 0.0f; }, "array::at: __n (which is 13) >= _Nm (which is 13)");
    expectText([&] { (void)fixed[Params::LastFloat]; }, "array::at: __n (which is 13) >= _Nm (which is 13)");
    expectText([&] { (void)fixed[Params::LastInt]; }, "array::at: __n (which is 7) >= _Nm (which is 7)");
    expectText([&] { params[Params::LastString] = ""; }, "array::at: __n (which is 7) >= _Nm (which is 7)");
    expectText([&] { (void)fixed[static_cast<Params::IntEnum>(99)]; },
               "array::at: __n (which is 99) >= _Nm (which is 7)");
    expectText([&] { (void)fixed[Params::string_to_float_enum("NO_SUCH_CELL")]; },
               "array::at: __n (which is 13) >= _Nm (which is 13)");
    EXPECT_THROW((void)params[static_cast<Params::StringEnum>(-1)], std::out_of_range);
}

TEST(ParamBlock, ResetsKeepToTheirKind)
{
    const auto fill = [](Params& params) {
        params[Params::SIGNAL_COUNT] = 3;
        params[Params::CLOCK_FREQ] = 1.0f;
        params[Params::DRIVER_TYPE] = "LUT";
        params[Params::SIGNAL_POWER] = 2.0f;
        params[Params::WIRE_CAPACITANCE] = 4.0f;
    };
    Params params;
    fill(params);
    params.resetUserInputs();
    EXPECT_EQ(params[Params::SIGNAL_COUNT], zelm::unsetInt);
    EXPECT_THAT(params[Params::CLOCK_FREQ], IsBits(zelm::unsetFloat));
    EXPECT_EQ(params[Params::DRIVER_TYPE], zelm::unsetString);
    EXPECT_THAT(params[Params::SIGNAL_POWER], IsBits(2.0f));
    EXPECT_THAT(params[Params::WIRE_CAPACITANCE], IsBits(4.0f));

    fill(params);
    params.resetModelOutputs();
    EXPECT_THAT(params[Params::SIGNAL_POWER], IsBits(zelm::unsetFloat));
    EXPECT_THAT(params[Params::WIRE_CAPACITANCE], IsBits(4.0f));
    EXPECT_EQ(params[Params::SIGNAL_COUNT], 3);

    fill(params);
    params.resetIntermediateCalculations();
    EXPECT_THAT(params[Params::WIRE_CAPACITANCE], IsBits(zelm::unsetFloat));
    EXPECT_THAT(params[Params::SIGNAL_POWER], IsBits(2.0f));
    EXPECT_EQ(params[Params::DRIVER_TYPE], "LUT");

    params.reset();
    EXPECT_EQ(params.reflect(), Params().reflect());
}

TEST(ParamBlock, ACopyHasCellsOfItsOwn)
{
    Params first;
    first[Params::VCCINT] = 0.8f;
    Params second = first;
    second[Params::VCCINT] = 0.9f;
    EXPECT_THAT(first[Params::VCCINT], IsBits(0.8f));
    EXPECT_THAT(second[Params::VCCINT], IsBits(0.9f));
}

TEST(ParamBlock, NamesAndEnumeratorsConvert)
{
    EXPECT_EQ(Params::enum_to_string(Params::LastFloat), "StringError");
    EXPECT_EQ(Params::enum_to_string(Params::LastInt), "StringError");
    EXPECT_EQ(Params::enum_to_string(Params::LastString), "StringError");
    EXPECT_EQ(Params::enum_to_string(static_cast<Params::StringEnum>(-1)), "StringError");
    EXPECT_EQ(Params::enum_to_string(Params::LastUIFloat), "LastUIFloat");
    EXPECT_EQ(Params::enum_to_string(Params::WIRE_CAPACITANCE), "WIRE_CAPACITANCE");

    EXPECT_EQ(Params::string_to_float_enum("FirstUIFloat"), 0);
    EXPECT_EQ(Params::string_to_float_enum("VCCINT"), Params::VCCINT);
    EXPECT_EQ(Params::string_to_float_enum("vccint"), Params::LastFloat);
    EXPECT_EQ(Params::string_to_float_enum("LastFloat"), Params::LastFloat);
    EXPECT_EQ(Params::string_to_int_enum("VCCINT"), Params::LastInt);
    EXPECT_EQ(Params::string_to_string_enum("DRIVER_TYPE"), Params::DRIVER_TYPE);

    EXPECT_EQ(Params::string_to_enum("SIGNAL_COUNT"), 1u);
    EXPECT_EQ(Params::string_to_enum("CLOCK_FREQ"), 1u);
    EXPECT_EQ(Params::string_to_enum("DRIVER_TYPE"), 1u);
    EXPECT_EQ(Params::string_to_enum("FirstICString"), 5u);
    EXPECT_EQ(Params::string_to_enum("NO_SUCH_CELL"), 0xffffffffu);
}

TEST(ParamBlock, EveryOrdinalConvertsThereAndBack)
{
    for (int i = 0; i < Params::LastFloat; ++i) {
        const auto cell = static_cast<Params::FloatEnum>(i);
        EXPECT_EQ(Params::string_to_float_enum(Params::enum_to_string(cell)), cell);
    }
}

TEST(ParamBlock, TablesAreFilledFromTheSourceTextOnce)
{
    std::vector<std::string> names;
    Params::populateE2S(names, "First, A B,C , Last");
    EXPECT_EQ(names, (std::vector<std::string>{"First", "AB", "C"}));
    Params::populateE2S(names, "Other, Last");
    EXPECT_EQ(names.size(), 3u);

    std::unordered_map<std::string, unsigned int> ordinals;
    Params::populateS2E(ordinals, "First, A,C, Last");
    EXPECT_EQ(ordinals, (std::unordered_map<std::string, unsigned int>{{"First", 0}, {"A", 1}, {"C", 2}}));
    Params::populateS2E(ordinals, "Other, Last");
    EXPECT_EQ(ordinals.size(), 3u);
}

TEST(ParamBlock, NameListsAreClearedAndLeaveMarkersOut)
{
    std::vector<std::string> names{"left over"};
    Params::getIntModelOutputNames(names);
    EXPECT_TRUE(names.empty());
    Params::getFloatUserInputNames(names);
    EXPECT_EQ(names, (std::vector<std::string>{"CLOCK_FREQ", "ROUTING_COMPLEXITY", "TOGGLE_RATE", "VCCINT"}));
    Params::getFloatIntermediateCalculationNames(names);
    EXPECT_EQ(names, (std::vector<std::string>{"NUM_NODES_PER_SIGNAL", "WIRE_CAPACITANCE"}));
    Params::getStringUserInputNames(names);
    EXPECT_EQ(names, (std::vector<std::string>{"DRIVER_TYPE"}));
}

TEST(ParamBlock, ReflectPrintsInputsIntermediatesOutputs)
{
    Params params;
    params[Params::SIGNAL_COUNT] = 2;
    params[Params::VCCINT] = 0.72f;
    params[Params::SIGNAL_POWER] = 58.3200035f;
    EXPECT_EQ(params.reflect(), "SIGNAL_COUNT = 2\n"
                                "CLOCK_FREQ = 3.40282e+38\n"
                                "ROUTING_COMPLEXITY = 3.40282e+38\n"
                                "TOGGLE_RATE = 3.40282e+38\n"
                                "VCCINT = 0.72\n"
                                "DRIVER_TYPE = UninitializedString\n"
                                "NUM_NODES_PER_SIGNAL = 3.40282e+38\n"
                                "WIRE_CAPACITANCE = 3.40282e+38\n"
                                "SIGNAL_POWER = 58.32\n");
}

template <class Work>
void onTwoThreads(Work work)
{
    std::thread first(work);
    std::thread second(work);
    first.join();
    second.join();
}

TEST(ParamBlockThreads, FirstConversionsRaceForOneTable)
{
    onTwoThreads([] {
        EXPECT_EQ(Params::enum_to_string(Params::CLOCK_FREQ), "CLOCK_FREQ");
        EXPECT_EQ(Params::enum_to_string(Params::LastICFloat), "LastICFloat");
        EXPECT_EQ(Params::enum_to_string(Params::LastFloat), "StringError") << "a name stands in the table twice";
        EXPECT_EQ(Params::string_to_enum("SIGNAL_POWER"), 7u);
    });
}

TEST(ParamBlockThreads, ReflectKeepsItsDepthToItself)
{
    Params params;
    params[Params::VCCINT] = 0.5f;
    const std::string expected = params.reflect();
    onTwoThreads([&] {
        for (int i = 0; i < 200; ++i)
            EXPECT_EQ(params.reflect(), expected);
    });
}

TEST(ModelThreads, BlocksOfTheirOwnNeedNoLock)
{
    setenv("QTA_DATADIR", ZELM_SOURCE_DIR "/data", 1);
    onTwoThreads([] {
        Params params;
        for (int i = 0; i < 200; ++i)
            ZelmOrvaneSignalModel::getGlobal().calculate(params);
        EXPECT_GT(params[Params::SIGNAL_POWER], 0.0f);
        EXPECT_FALSE(ZelmOrvaneSignalData::getGlobal().reflect().empty());
    });
}

TEST(Exception, TellsMessageAndFunction)
{
    const ZelmException exception("no such part", "selectPart");
    EXPECT_STREQ(exception.what(), "Zelm Exception: no such part [ in function: selectPart ]");
    const ZelmException copy = exception;
    EXPECT_STREQ(copy.what(), exception.what());
    static_assert(std::is_polymorphic_v<ZelmException> && !std::has_virtual_destructor_v<ZelmException>,
                  "what is its one virtual operation");
    static_assert(!std::is_base_of_v<std::exception, ZelmException>);
}

} // namespace zelm::test::paramBlockTest
