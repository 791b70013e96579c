#include "framework/ZelmDependencies.h"

#include <gmock/gmock.h>

#include <initializer_list>

namespace zelm::test::dependenciesTest {

namespace {

using Type = ZelmCellInfo::Type;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

// A block of four ints, three floats and two strings. The result is a float; the operands are of all types.
class DependenciesTest : public testing::Test {
protected:
    static constexpr CellRef result{Type::real, 1};
    static constexpr CellRef a{Type::integer, 1};
    static constexpr CellRef b{Type::real, 2};
    static constexpr CellRef c{Type::text, 1};

    void read(CellRef cell)
    {
        if (!dependencies.readsAsBefore(cell))
            dependencies.readOther(cell);
    }

    void compute(CellRef cell, std::initializer_list<CellRef> operands)
    {
        read(cell);
        const Dependencies::Frame waiting = dependencies.enter(cell);
        for (const CellRef operand : operands)
            read(operand);
        dependencies.leave(waiting);
    }

    std::vector<Dependencies::Node> dependents(CellRef changed)
    {
        std::vector<Dependencies::Node> found;
        dependencies.findDependents({dependencies.nodeOf(changed)}, fixed, found);
        return found;
    }

    Dependencies dependencies{4, 3, 2};
    std::vector<bool> fixed = std::vector<bool>(9, false);
};

TEST_F(DependenciesTest, NodesStandForCellsOfThreeArrays)
{
    EXPECT_EQ(dependencies.size(), 9u);
    EXPECT_EQ(dependencies.nodeOf(b), 4 + 2);
    EXPECT_EQ(dependencies.nodeOf(c), 4 + 3 + 1);
    for (const CellRef cell : {result, a, b, c})
        EXPECT_EQ(dependencies.cellOf(dependencies.nodeOf(cell)), cell);
}

TEST_F(DependenciesTest, WhatWasReadWhileACellWasComputedIsItsOperand)
{
    read(c); // from outside
    compute(result, {a, b});
    EXPECT_THAT(dependents(a), UnorderedElementsAre(dependencies.nodeOf(result)));
    EXPECT_THAT(dependents(c), IsEmpty());
    fixed[dependencies.nodeOf(result)] = true;
    EXPECT_THAT(dependents(a), IsEmpty()); // given from outside, whatever it was computed from once
}

TEST_F(DependenciesTest, DependentsOfDependentsAreFoundOnce)
{
    const Dependencies::Frame outside = dependencies.enter(result);
    compute(b, {a});
    read(a);
    dependencies.leave(outside);
    EXPECT_THAT(dependents(a), UnorderedElementsAre(dependencies.nodeOf(result), dependencies.nodeOf(b)));
}

TEST_F(DependenciesTest, AnotherBranchBringsItsOperandsAndLosesTheOthers)
{
    compute(result, {a, b});
    EXPECT_FALSE(dependencies.takeLostOperands());
    compute(result, {a, b});
    EXPECT_FALSE(dependencies.takeLostOperands());
    compute(result, {b, a}); // the same in another order
    EXPECT_FALSE(dependencies.takeLostOperands());
    compute(result, {b, a, c}); // more
    EXPECT_FALSE(dependencies.takeLostOperands());
    EXPECT_THAT(dependents(c), UnorderedElementsAre(dependencies.nodeOf(result)));
    compute(result, {b, c}); // a is missing in the middle
    EXPECT_TRUE(dependencies.takeLostOperands());
    EXPECT_FALSE(dependencies.takeLostOperands()); // told once
    compute(result, {b});                          // c is missing at the end
    EXPECT_TRUE(dependencies.takeLostOperands());
}

TEST_F(DependenciesTest, WhatNoRootLeadsToIsUnread)
{
    const auto unread = [&] {
        std::vector<bool> isRoot(9, false);
        isRoot[dependencies.nodeOf(result)] = true;
        std::vector<Dependencies::Node> found;
        dependencies.findUnread(isRoot, fixed, found);
        return found;
    };
    const Dependencies::Frame outside = dependencies.enter(result);
    compute(b, {a});
    dependencies.leave(outside);
    // Nodes: ints 0 to 3, floats 4 to 6, texts 7 and 8. The result is 5, and leads to b, 6, and a, 1.
    EXPECT_THAT(unread(), UnorderedElementsAre(0, 2, 3, 4, 7, 8));
    fixed[dependencies.nodeOf(b)] = true; // given: a isn't read for it
    EXPECT_THAT(unread(), UnorderedElementsAre(0, 1, 2, 3, 4, 7, 8));
    fixed[dependencies.nodeOf(c)] = true; // given, and none of those to forget
    EXPECT_THAT(unread(), UnorderedElementsAre(0, 1, 2, 3, 4, 7));
}

} // namespace

} // namespace zelm::test::dependenciesTest
