// Numbers are read and written alike in a process that has set a locale with decimal commas and grouped thousands.
#include "framework/ZelmHelperUtils.h"
#include "framework/ZelmOrvaneSignalModel.h"

#include "support/BlockFixture.h"

#include <clocale>
#include <cstdlib>
#include <locale>

// The C library forgets to free its list of folders where LOCPATH is set, as the test below does.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions(); // NOLINT: as it is sought
extern "C" const char* __lsan_default_suppressions()                                         // NOLINT
{
    return "leak:argz_add_sep";
}

namespace zelm::test::localeTest {

using Utils = ZelmHelperUtils;

class DecimalComma : public testing::Test {
protected:
    // The locale is made for the test: few machines have it.
    void SetUp() override
    {
        setenv("LOCPATH", m_directory.path().c_str(), 1);
        const std::string make = "localedef -i de_DE -f UTF-8 " + (m_directory.path() / "de_DE.UTF-8").string();
        const bool made = std::system((make + " > /dev/null 2>&1").c_str()) == 0; // NOLINT: fixed words
        if (!made || !std::setlocale(LC_ALL, "de_DE.UTF-8"))
            GTEST_SKIP() << "no German locale: localedef (libc-bin) or its sources (locales) are missing";
        std::locale::global(std::locale("de_DE.UTF-8"));
        ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    }

    void TearDown() override
    {
        std::locale::global(std::locale::classic()); // sets the C library's too
        unsetenv("LOCPATH");
    }

private:
    TemporaryDataDirectory m_directory;
};

TEST_F(DecimalComma, ConversionsDontSeeIt)
{
    EXPECT_THAT(Utils::s2f("0.45"), IsBits(0.45f));
    EXPECT_THAT(Utils::s2f("0,45"), IsBits(0.0f));
    EXPECT_THAT(Utils::s2f("0x1.8p3"), IsBits(12.0f));
    EXPECT_EQ(Utils::s2i("1.234"), 1);
    EXPECT_EQ(Utils::ToString(1234567), "1234567");
    EXPECT_EQ(Utils::ToString(1234.5f), "1234.5");
    EXPECT_EQ(Utils::i2s(1234567, 9, '*'), "**1234567");
    std::string text;
    Utils::numToTightStr(0.123f, text, 0.01f);
    EXPECT_EQ(text, "0.123");
    EXPECT_STREQ(std::localeconv()->decimal_point, ",") << "the host's locale is gone";
}

TEST_F(DecimalComma, BlocksDontSeeIt)
{
    using Params = ZelmOrvaneSignalParams;
    const TemporaryDataDirectory directory;
    directory.write("ZelmOrvaneSignalData", "ZelmOrvaneSignalData : { PER_NODE_CAP : { OTHER = 1234.5; }; };");
    ZelmOrvaneSignalData& data = ZelmOrvaneSignalData::getMutableGlobal();
    ASSERT_TRUE(data.reset());
    EXPECT_THAT(data.getPerNodeCap("OTHER"), IsBits(1234.5f));
    EXPECT_NE(data.reflect().find("m_PerNodeCap[0][1] = 1234.5\n"), std::string::npos) << data.reflect();
    Params params;
    params[Params::SIGNAL_COUNT] = 12345;
    params[Params::VCCINT] = 0.72f;
    EXPECT_EQ(params.reflect().substr(0, 21), "SIGNAL_COUNT = 12345\n");
    EXPECT_NE(params.reflect().find("VCCINT = 0.72\n"), std::string::npos) << params.reflect();
}

} // namespace zelm::test::localeTest
