// A reader that throws text, as libraries underneath may: told on standard output, unlike other failures. A program of
// its own, for it takes the reader's place.
#include "framework/ZelmData.h"

#include "support/DataDirectory.h"

#include <gmock/gmock.h>

#include <libconfig.h++>

// Visible, or the library wouldn't find it.
__attribute__((visibility("default"))) void libconfig::Config::readFile(const char* /*filename*/)
{
    throw std::string("no such device");
}

namespace zelm::test::thrownTextTest {

TEST(ReadFile, AThrownTextIsToldOnStandardOutputAndThrownOn)
{
    const TemporaryDataDirectory directory;
    libconfig::Config cfg;
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    EXPECT_THROW(ZelmData::readFile(&cfg, "orvane/ZelmOrvaneSignalData.cfg"), std::string);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Zelm Data Exception: no such device\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace zelm::test::thrownTextTest
