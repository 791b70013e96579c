// The reader of plain data files against libconfig, which stays the judge: the same tables, or hands off.
#include "framework/ZelmOrvaneGauge.h"

#include "support/BlockFixture.h"
#include "support/TableFileCheck.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>

namespace zelm::test::tableFileTest {

std::string fileWith(const TemporaryDataDirectory& directory, std::string_view text)
{
    directory.write("ZelmOrvaneGaugeData", text);
    return directory.fileOf("ZelmOrvaneGaugeData").string();
}

bool isPlain(std::string_view text)
{
    const TemporaryDataDirectory directory;
    return TableFile(fileWith(directory, text)).isPlain();
}

// Reading through libconfig takes ten times as long, so none may slip into a form that needs it.
TEST(TableFile, AllShippedDataArePlainAndAsLibconfigReadsThem)
{
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(shippedDataDirectory() + "/powercfg/orvane")) {
        const std::string path = entry.path().string();
        EXPECT_TRUE(TableFile(path).isPlain()) << path;
        EXPECT_EQ(differenceFromLibconfig(path), "") << path;
        ++files;
    }
    EXPECT_EQ(files, 46);
}

constexpr std::string_view kPlain = R"(// about
B :
{
  T : { A = 1; B-1 : { C_2 = -2.5e-3; D = "x y"; }; EMPTY : { }; E = true; F = false; # so
        G = "}"; H = "// no"; I = -7; J = 0; K = 0.0; L = 1.5E+10; }; // here
  T2 = { A = 2147483647; B = -2147483648; C = 123456789.123456789; };
  S = 1;
};
)";

TEST(TableFile, APlainTextIsReadAsWritten)
{
    const TemporaryDataDirectory directory;
    const TableFile file(fileWith(directory, kPlain));
    ASSERT_TRUE(file.isPlain());
    Table<float> floats;
    ASSERT_TRUE(file.load("B", "T", floats));
    EXPECT_EQ(floats.size(), 6u); // A, B-1.C_2, I, J, K, L; D to H are no numbers
    EXPECT_THAT(floats.find(Key("A")), IsBits(1.0f));
    EXPECT_THAT(floats.find(Key("B-1"), Key("C_2")), IsBits(-0.0025f));
    EXPECT_THAT(floats.find(Key("L")), IsBits(1.5e10f));
    Table<std::string> strings;
    ASSERT_TRUE(file.load("B", "T", strings));
    EXPECT_EQ(strings.size(), 3u);
    EXPECT_EQ(strings.find(Key("B-1"), Key("D")), "x y");
    EXPECT_EQ(strings.find(Key("H")), "// no");
    Table<bool> bools;
    ASSERT_TRUE(file.load("B", "T", bools));
    EXPECT_EQ(bools.size(), 2u);
    EXPECT_TRUE(bools.find(Key("E")));
    EXPECT_FALSE(bools.find(Key("F")));
}

TEST(TableFile, WhatTablesDontHoldIsLeftToLibconfig)
{
    const TemporaryDataDirectory directory;
    const TableFile file(fileWith(directory, kPlain));
    ASSERT_TRUE(file.isPlain());
    Table<int> table;
    EXPECT_FALSE(file.load("B", "T", table)) << "a number with a point as a whole one";
    EXPECT_FALSE(file.load("B", "T3", table)) << "no such group";
    EXPECT_FALSE(file.load("C", "T", table)) << "no such block";
    EXPECT_FALSE(file.load("B", "S", table)) << "no group";
}

TEST(TableFile, WhatItDoesntKnowIsLeftToLibconfig)
{
    ASSERT_TRUE(isPlain("A = 1;\n"));
    for (const std::string_view text : {"",
                                        "A = 1",
                                        "A = 1,",
                                        "A = 1;;",
                                        "A : { B = 1; }",
                                        "A : { B = 1;",
                                        "A = 1; };",
                                        "A = 01;",
                                        "A = -007;",
                                        "A = 0x1F;",
                                        "A = 1L;",
                                        "A = 2147483648;",
                                        "A = +1;",
                                        "A = .5;",
                                        "A = 1e5;",
                                        "A = 1.5e;",
                                        "A = 1.0e999;",
                                        "A = 1.5.2;",
                                        "A = -;",
                                        "A = TRUE;",
                                        "A = truth;",
                                        "true = 1;",
                                        "False = 1;",
                                        "A = 1; A = 2;",
                                        "A : { B : { }; B : { }; };",
                                        "A : { }; A : { };",
                                        "A = [1];",
                                        "A = (1);",
                                        "A = \"a\" \"b\";",
                                        "A = \"a\\n\";",
                                        "A = \"a\nb\";",
                                        "A = \"a;",
                                        "A = 1; // end",
                                        "A = 1; # end",
                                        "/* A */ A = 1;",
                                        "A = 1 / 2;",
                                        "A.B = 1;",
                                        "*A = 1;",
                                        "_A = 1;",
                                        "1A = 1;",
                                        "A = 1;\r\n",
                                        "@include \"b.cfg\"\nA = 1;",
                                        "A == 1;",
                                        "A 1;",
                                        "A;",
                                        "= 1;"})
        EXPECT_FALSE(isPlain(text)) << text;
    EXPECT_FALSE(isPlain(std::string_view("A = 1;\0", 7)));
    std::string deep;
    for (int i = 0; i < 32; ++i)
        deep += "A : { ";
    std::string ends;
    for (int i = 0; i < 32; ++i)
        ends += "}; ";
    EXPECT_TRUE(isPlain(deep + ends));
    EXPECT_FALSE(isPlain(deep + "A : { }; " + "A : { }; " + ends)) << "the name stands twice";
    EXPECT_FALSE(isPlain(deep + "A : { }; " + ends)) << "33 groups in each other";
}

TEST(TableFile, AFileThatCantBeReadIsLeftToLibconfig)
{
    const TemporaryDataDirectory directory;
    EXPECT_FALSE(TableFile((directory.path() / "none.cfg").string()).isPlain());
    EXPECT_FALSE(TableFile(directory.path().string()).isPlain());
    EXPECT_FALSE(TableFile("/dev/zero").isPlain());
    EXPECT_FALSE(TableFile(std::string(5000, 'x')).isPlain());
}

// A block takes the values that libconfig converts, whichever of the two reads the file.
TEST(TableFile, ABlockLoadsTheSameThroughEither)
{
    const std::string tables = "ENABLED : { A = true; B = 1; }; LONG_KEY : { A = 1; B = 0.1; C = \"1\"; }; "
                               "GAIN : { A : { B = -2; }; }; GRADES : { G = \"good\"; H = 1; }; ";
    const TemporaryDataDirectory directory;
    const auto load = [&](const std::string& limits) {
        directory.write("ZelmOrvaneGaugeData", "ZelmOrvaneGaugeData : { " + tables + limits + " };");
        return ZelmOrvaneGaugeData().reflect();
    };
    const std::string plain = load("LIMITS : { A : { B : { C = 3; }; }; };");
    EXPECT_EQ(load("LIMITS : { A : { B : { C = 3; }; }; }"), plain) << "a semicolon less: libconfig's";
    EXPECT_EQ(load("LIMITS : { A : { B : { C = 3.0; }; }; };"), plain) << "converted: libconfig's";
    EXPECT_NE(plain.find("m_Limits[0][1] = 3\n"), std::string::npos) << plain;
    EXPECT_NE(plain.find("m_Enabled ( Container with 1 elements )"), std::string::npos) << plain;
    EXPECT_NE(plain.find("m_LongKey ( Container with 2 elements )"), std::string::npos) << plain;
}

// ---- Made-up texts ----

class MadeUp {
public:
    explicit MadeUp(unsigned seed) : m_random(seed) {}

    std::size_t below(std::size_t count)
    {
        return std::uniform_int_distribution<std::size_t>(0, count - 1)(m_random);
    }

    std::string settings(int depth)
    {
        std::string text;
        for (std::size_t i = below(4) + 1; i > 0; --i)
            text += setting(depth);
        return text;
    }

    // A few bytes of a text put in, left out or changed, or a piece of it twice.
    std::string damaged(std::string text)
    {
        constexpr std::string_view bytes("{}=:;,\"\\#/@.*-+eEL0xTt [()]\n\r\t\f\0\x80\xff", 35);
        for (std::size_t i = below(3) + 1; i > 0 && !text.empty(); --i) {
            const std::size_t at = below(text.size());
            switch (below(4)) {
            case 0:
                text.insert(at, 1, bytes[below(bytes.size())]);
                break;
            case 1:
                text.erase(at, below(3) + 1);
                break;
            case 2:
                text[at] = bytes[below(bytes.size())];
                break;
            default:
                text.insert(below(text.size()), text.substr(at, below(30)));
            }
        }
        return text;
    }

private:
    std::string oneOf(std::initializer_list<const char*> words)
    {
        return *(words.begin() + below(words.size()));
    }

    std::string blank()
    {
        return below(3) != 0 ? " " : oneOf({"", "\n", "\t ", " // so\n", " # \x80 \"{\n", "\n\n  "});
    }

    // Few enough to meet again now and then.
    std::string name()
    {
        return oneOf({"A", "B", "c", "D_1", "E-2", "LONGER_NAME", "x9"}) + std::to_string(below(6));
    }

    std::string number()
    {
        const auto digits = [&](std::size_t most) {
            std::string text;
            for (std::size_t i = below(most) + 1; i > 0; --i)
                text += static_cast<char>('0' + below(10));
            return text;
        };
        std::string text = oneOf({"", "", "-"}) + (below(9) != 0 ? std::to_string(below(100000)) : digits(12));
        const bool hasPoint = below(2) == 0;
        if (hasPoint)
            text += "." + (below(10) == 0 ? std::string() : digits(18));
        if (below(hasPoint ? 3 : 30) == 0)
            text += oneOf({"e", "E", "e-", "e+"}) + digits(3);
        return text;
    }

    std::string value()
    {
        switch (below(40)) {
        case 0:
            return oneOf({"true", "false", "True", "fALSE"});
        case 1:
        case 2:
        case 3:
            return "\"" + oneOf({"", "word", "two words", "{ = ; }", "\xc2\xb5", "\\\"", "a\tb"}) + "\"";
        case 4:
            return oneOf({"0x10", "5000000000", "5L", "010", "1.", ".5", "-0", "-0.0", "1e5", "4.9e-324", "1.0e-400"});
        default:
            return number();
        }
    }

    std::string setting(int depth)
    {
        const std::string end = blank() + (below(60) == 0 ? oneOf({"", ","}) : ";") + blank();
        const std::string begin = name() + blank() + oneOf({"=", ":"}) + blank();
        if (depth > 0)
            return begin + "{" + blank() + settings(depth - 1) + "}" + end;
        return begin + value() + end;
    }

    std::mt19937 m_random;
};

TEST(TableFile, OfMadeUpTextsItReadsAsLibconfigOrNotAtAll)
{
    const TemporaryDataDirectory directory;
    MadeUp madeUp(20260);
    int plain = 0;
    constexpr int count = 6000;
    for (int i = 0; i < count; ++i) {
        std::string text = madeUp.settings(i % 3);
        if (i % 2 != 0)
            text = madeUp.damaged(std::move(text));
        const std::string path = fileWith(directory, text);
        plain += TableFile(path).isPlain() ? 1 : 0;
        ASSERT_EQ(differenceFromLibconfig(path), "") << text;
    }
    EXPECT_GT(plain, count / 10);
    EXPECT_LT(plain, count * 9 / 10);
}

} // namespace zelm::test::tableFileTest
