#pragma once

#include <span>

#include "mfcurves/engine/graph.h"

/// What the rows of the function table refer to: slopes of functions and the
/// functions that are made of others. Names are those of the rows.
namespace mf::engine::rules {

NodeId slopeOfSin(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfCos(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfTan(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfAsin(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfAcos(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfAtan(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfSinh(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfCosh(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfTanh(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfSech(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfExp(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfLog(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfLog10(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfSqrt(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfCbrt(Graph& graph, NodeId f, NodeId a);
NodeId slopeOfAbs(Graph& graph, NodeId f, NodeId a);
/// Of functions that are constant in pieces.
NodeId slopeOfPieces(Graph& graph, NodeId f, NodeId a);

NodeId slopeOfAtan2(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfHypot(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfSignOf(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfMin(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfMax(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfDim(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfMod(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);
NodeId slopeOfPower(Graph& graph, NodeId f, NodeId a, NodeId b, NodeId da, NodeId db);

NodeId expandLn(Graph& graph, std::span<const NodeId> arguments);
NodeId expandMin(Graph& graph, std::span<const NodeId> arguments);
NodeId expandMax(Graph& graph, std::span<const NodeId> arguments);
NodeId expandIf(Graph& graph, std::span<const NodeId> arguments);
NodeId expandStep(Graph& graph, std::span<const NodeId> arguments);
NodeId expandStep5(Graph& graph, std::span<const NodeId> arguments);
NodeId expandHavsin(Graph& graph, std::span<const NodeId> arguments);
NodeId expandPoly(Graph& graph, std::span<const NodeId> arguments);
NodeId expandCheby(Graph& graph, std::span<const NodeId> arguments);
NodeId expandShf(Graph& graph, std::span<const NodeId> arguments);
NodeId expandForsin(Graph& graph, std::span<const NodeId> arguments);
NodeId expandForcos(Graph& graph, std::span<const NodeId> arguments);

}  // namespace mf::engine::rules
