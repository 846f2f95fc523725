// SPDX-License-Identifier: MIT

#include "mfcurves/engine/graph.h"

#include <gtest/gtest.h>
#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/term.h"

namespace {

using namespace mf::engine;

class GraphOfTerms : public testing::Test {
protected:
    Graph graph;
    TermMaker maker{graph, Folding::KeepText};
    const Term zero = maker.constant(0.0);
    const Term x = maker.variable(0);
    const Term y = maker.variable(1);
};

TEST_F(GraphOfTerms, HasEqualNodesOnce)
{
    EXPECT_EQ(maker.variable(0), x);
    EXPECT_EQ(x + maker.constant(2.0), 2.0 + x);
    EXPECT_EQ(call(FunctionId::Sin, x), call(FunctionId::Sin, x));
    EXPECT_NE(call(FunctionId::Sin, x), call(FunctionId::Cos, x));
    EXPECT_NE(x, y);
}

TEST_F(GraphOfTerms, HasZeroAndMinusZero)
{
    EXPECT_NE(maker.constant(-0.0), zero);
}

TEST_F(GraphOfTerms, ComparesListsByTheirContent)
{
    const double some[] = {1.0, 2.0, 3.0};
    const double others[] = {1.0, 2.0, 4.0};
    const Term first = polynomial(x, 0, some);
    EXPECT_EQ(polynomial(x, 0, some), first);
    EXPECT_NE(polynomial(x, 0, others), first);
    EXPECT_NE(polynomial(x, 1, some), first);
    EXPECT_NE(chebyshev(x, some), first);
}

TEST_F(GraphOfTerms, FindsItsNodesAfterItHasGrown)
{
    std::vector<Term> made;
    for (int i = 0; i < 10'000; ++i)
        made.push_back(maker.constant(i));
    for (int i = 0; i < 10'000; ++i)
        ASSERT_EQ(maker.constant(i), made[static_cast<std::size_t>(i)]);
}

TEST_F(GraphOfTerms, HasOperandsBeforeTheirUsers)
{
    Term last = x;
    for (int i = 0; i < 50; ++i)
        last = call(FunctionId::Sin, last + call(FunctionId::Exp, last));
    for (std::uint32_t i = 0; i <= last.id().index; ++i)
        graph.forEachOperand(graph[NodeId{i}], [&](NodeId operand) { EXPECT_LT(operand.index, i); });
}

TEST_F(GraphOfTerms, TakesNoMoreNodesThanTheLimit)
{
    while (graph.size() < kMostNodes - 1)
        maker.constant(static_cast<double>(graph.size()));
    EXPECT_FALSE(graph.full());
    maker.constant(-1.0);
    EXPECT_TRUE(graph.full());
    EXPECT_EQ(maker.constant(-2.0).id(), NodeId{0});
    EXPECT_EQ(graph.size(), kMostNodes);
}

TEST_F(GraphOfTerms, TakesNoListWhereItTakesNoNode)
{
    while (graph.size() < kMostNodes - 1)
        maker.constant(static_cast<double>(graph.size()));
    EXPECT_FALSE(graph.full());
    EXPECT_EQ(chooseLess(x, y, y, x).id(), NodeId{kMostNodes - 1});  // its operands count too
    EXPECT_TRUE(graph.full());
    EXPECT_EQ(chooseLess(y, x, y, x).id(), NodeId{0});
}

TEST_F(GraphOfTerms, CountsCoefficientsAsNodes)
{
    const std::vector<double> coefficients(kMostNodes, 1.0);
    polynomial(x, 0, coefficients);
    EXPECT_TRUE(graph.full());
}

// One long list that is looked up again and again adds no nodes, but takes time.
TEST_F(GraphOfTerms, LooksUpNoMoreThanTheLimit)
{
    constexpr std::size_t kLength = kMostNodes / 10;
    const std::vector<double> coefficients(kLength, 1.0);
    std::size_t asked = 0;
    for (; !graph.full() && asked < 2 * kMostLookups / kLength; ++asked)
        polynomial(x, 0, coefficients);
    EXPECT_TRUE(graph.full());
    EXPECT_NEAR(static_cast<double>(asked), static_cast<double>(kMostLookups) / kLength, 2.0);
    EXPECT_EQ(polynomial(x, 0, coefficients).id(), NodeId{0});
}

}  // namespace
