#include "mfcurves/engine/graph.h"

#include <gtest/gtest.h>
#include <vector>

#include "mfcurves/engine/functionTable.h"
#include "mfcurves/engine/limits.h"
#include "mfcurves/engine/simplification.h"

namespace {

using namespace mf::engine;

TEST(Graph, MakesEqualNodesOnce)
{
    Graph graph;
    const NodeId x = variable(graph, 0);
    EXPECT_EQ(variable(graph, 0), x);
    EXPECT_EQ(sum(graph, x, constant(graph, 2.0)), sum(graph, constant(graph, 2.0), x));
    EXPECT_EQ(call(graph, FunctionId::Sin, x), call(graph, FunctionId::Sin, x));
    EXPECT_NE(call(graph, FunctionId::Sin, x), call(graph, FunctionId::Cos, x));
    EXPECT_NE(variable(graph, 1), x);
}

TEST(Graph, TellsZeroFromMinusZero)
{
    Graph graph;
    EXPECT_NE(constant(graph, 0.0), constant(graph, -0.0));
}

TEST(Graph, ComparesListsByTheirContent)
{
    Graph graph;
    const NodeId x = variable(graph, 0);
    const double some[] = {1.0, 2.0, 3.0};
    const double others[] = {1.0, 2.0, 4.0};
    const NodeId first = polynomial(graph, x, 0, some);
    EXPECT_EQ(polynomial(graph, x, 0, some), first);
    EXPECT_NE(polynomial(graph, x, 0, others), first);
    EXPECT_NE(polynomial(graph, x, 1, some), first);
    EXPECT_NE(chebyshev(graph, x, some), first);
}

TEST(Graph, FindsItsNodesAfterItHasGrown)
{
    Graph graph;
    std::vector<NodeId> made;
    for (int i = 0; i < 10'000; ++i)
        made.push_back(constant(graph, i));
    for (int i = 0; i < 10'000; ++i)
        ASSERT_EQ(constant(graph, i), made[static_cast<std::size_t>(i)]);
}

TEST(Graph, HasOperandsBeforeTheirUsers)
{
    Graph graph;
    const NodeId x = variable(graph, 0);
    NodeId last = x;
    for (int i = 0; i < 50; ++i)
        last = call(graph, FunctionId::Sin, sum(graph, last, call(graph, FunctionId::Exp, last)));
    for (std::uint32_t i = 0; i <= last.index; ++i)
        graph.forEachOperand(graph[NodeId{i}], [&](NodeId operand) { EXPECT_LT(operand.index, i); });
}

TEST(Graph, TakesNoMoreNodesThanTheLimit)
{
    Graph graph;
    for (std::size_t i = 0; i < kMostNodes - 1; ++i)
        constant(graph, static_cast<double>(i));
    EXPECT_FALSE(graph.full());
    constant(graph, -1.0);
    EXPECT_TRUE(graph.full());
    EXPECT_EQ(constant(graph, -2.0), NodeId{0});
    EXPECT_EQ(graph.size(), kMostNodes);
}

TEST(Graph, TakesNoListWhereItTakesNoNode)
{
    Graph graph;
    constant(graph, 0.0);
    const NodeId x = variable(graph, 0);
    const NodeId y = variable(graph, 1);
    for (std::size_t i = 3; i < kMostNodes - 1; ++i)
        constant(graph, static_cast<double>(i));
    EXPECT_FALSE(graph.full());
    EXPECT_EQ(chooseLess(graph, x, y, y, x), NodeId{kMostNodes - 1});  // its operands count too
    EXPECT_TRUE(graph.full());
    EXPECT_EQ(chooseLess(graph, y, x, y, x), NodeId{0});
}

TEST(Graph, CountsCoefficientsAsNodes)
{
    Graph graph;
    const NodeId x = variable(graph, 0);
    const std::vector<double> coefficients(kMostNodes, 1.0);
    polynomial(graph, x, 0, coefficients);
    EXPECT_TRUE(graph.full());
}

// One long list, looked up again and again, makes no node and takes its time.
TEST(Graph, LooksUpNoMoreThanTheLimit)
{
    constexpr std::size_t kLength = kMostNodes / 10;
    Graph graph;
    const NodeId x = variable(graph, 0);
    const std::vector<double> coefficients(kLength, 1.0);
    std::size_t asked = 0;
    for (; !graph.full() && asked < 2 * kMostLookups / kLength; ++asked)
        polynomial(graph, x, 0, coefficients);
    EXPECT_TRUE(graph.full());
    EXPECT_NEAR(static_cast<double>(asked), static_cast<double>(kMostLookups) / kLength, 2.0);
    EXPECT_EQ(polynomial(graph, x, 0, coefficients), NodeId{0});
}

}  // namespace
