#include "framework/ZelmTable.h"

#include "support/Bits.h"

#include <gmock/gmock.h>

#include <unordered_map>

namespace zelm::test::tableTest {

namespace {

TEST(Key, HashesOfJoinedPartsFollowFromThoseOfTheParts)
{
    detail::JoinedKey joined;
    joined.add(Key("AB"));
    joined.add(Key(std::string_view("C")));
    joined.add(Key("DEF"));
    EXPECT_EQ(joined.hash(), Key("AB.C.DEF").hash());
    EXPECT_EQ(joined.size(), 8u);
    // 'A' is 65, 'B' 66: the polynomial by hand
    EXPECT_EQ(Key("AB").hash(), 65u * Key::base + 66u);
    EXPECT_EQ(Key("AB").shift(), Key::base * Key::base);
}

// Whatever the length: they are worked out block by block.
TEST(Key, HashesArePolynomialsOverTheCharacters)
{
    std::string text;
    std::uint64_t hash = 0;
    std::uint64_t shift = 1;
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(Key(text).hash(), hash) << text;
        EXPECT_EQ(Key(text).shift(), shift) << text;
        text += static_cast<char>('A' + i);
        hash = hash * Key::base + static_cast<unsigned char>(text.back());
        shift *= Key::base;
    }
}

TEST(Table, PartsJoinAsTheyDoInTheStore)
{
    Table<float> table;
    table.insert_or_assign("A.B", 1.0f);
    table.insert_or_assign("AB", 2.0f);
    table.insert_or_assign("", 3.0f);
    table.insert_or_assign("A.B.C", 4.0f);
    EXPECT_THAT(table.find(Key("A"), Key("B")), IsBits(1.0f));
    EXPECT_THAT(table.find(Key("A.B")), IsBits(1.0f)); // a part may hold the separator
    EXPECT_THAT(table.find(Key(""), Key("A"), Key("B"), Key("")), IsBits(1.0f));
    EXPECT_THAT(table.find(Key("A"), Key(""), Key("B")), IsBits(2.0f)); // the gap takes the separator away
    EXPECT_THAT(table.find(Key("")), IsBits(3.0f));
    EXPECT_THAT(table.find(Key("A.B"), Key("C")), IsBits(4.0f));
    EXPECT_THAT(table.find(Key("A"), Key("B.C")), IsBits(4.0f));
    EXPECT_THAT(table.find(Key("A"), Key("C")), IsBits(unsetFloat));
}

TEST(Table, ALaterValueTakesTheEarliersPlace)
{
    Table<std::string> table;
    table.insert_or_assign("A", "first");
    table.insert_or_assign("A", "second");
    EXPECT_EQ(table.size(), 1u);
    EXPECT_EQ(table.find(Key("A")), "second");
}

// Of texts over two letters that follow this sequence and its complement the polynomial hash is the same, whatever the
// base, once they are long enough: every power of 2 up to the 64th divides their difference.
std::string thueMorse(bool complement)
{
    std::string text;
    for (unsigned i = 0; i < 4096; ++i) {
        const bool odd = __builtin_popcount(i) % 2 == 1;
        text += odd != complement ? 'b' : 'a';
    }
    return text;
}

TEST(Table, ACollisionOfHashesGivesNoWrongNumber)
{
    const std::string one = thueMorse(false);
    const std::string other = thueMorse(true);
    ASSERT_NE(one, other);
    ASSERT_EQ(Key(one).hash(), Key(other).hash());
    Table<int> table;
    table.insert_or_assign(one, 1);
    EXPECT_EQ(table.find(Key(one)), 1);
    EXPECT_EQ(table.find(Key(other)), unsetInt);
    table.insert_or_assign(other, 2);
    EXPECT_EQ(table.find(Key(one)), 1);
    EXPECT_EQ(table.find(Key(other)), 2);
}

TEST(Table, GrowsAndKeepsTheOrderOfAHashMap)
{
    Table<int> table;
    std::unordered_map<std::string, int> map;
    for (int i = 0; i < 3000; ++i) {
        const std::string key = "ROW_" + std::to_string(i * 7919 % 3000) + ".X";
        table.insert_or_assign(key, i);
        map.insert_or_assign(key, i);
    }
    for (const auto& [key, value] : map)
        EXPECT_EQ(table.find(Key(key)), value) << key;
    std::vector<std::string> inTable;
    table.forEach([&](std::string_view key, int) { inTable.emplace_back(key); });
    std::vector<std::string> inMap;
    for (const auto& [key, value] : map)
        inMap.push_back(key);
    EXPECT_EQ(inTable, inMap);
}

TEST(Table, ACopyIsATableOfItsOwn)
{
    Table<std::string> table;
    table.insert_or_assign("A", "text longer than a small string holds");
    const Table<std::string> copy = table;
    table.insert_or_assign("A", "changed");
    table.insert_or_assign("B", "new");
    EXPECT_EQ(copy.find(Key("A")), "text longer than a small string holds");
    EXPECT_EQ(copy.size(), 1u);
    table = copy;
    EXPECT_EQ(table.find(Key("B")), unsetString);
    table.clear();
    EXPECT_EQ(table.size(), 0u);
    EXPECT_EQ(table.find(Key("A")), unsetString);
}

} // namespace

} // namespace zelm::test::tableTest
