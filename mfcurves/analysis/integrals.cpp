// SPDX-License-Identifier: MIT

#include "mfcurves/analysis/integrals.h"

#include <cmath>

namespace mf::analysis {
namespace {

// Gauss-Legendre with 10 points: the positive nodes and their weights.
constexpr std::array<double, 5> kNodes = {0.14887433898163121088, 0.43339539412924719080,
                                          0.67940956829902440623, 0.86506336668898451073,
                                          0.97390652851717172008};
constexpr std::array<double, 5> kWeights = {0.29552422471475287017, 0.26926671930999635509,
                                            0.21908636251598204400, 0.14945134915058059315,
                                            0.06667134430868813759};

void add(AllIntegrals& total, const AllIntegrals& part)
{
    for (std::size_t k = 0; k < kOrders; ++k) {
        total[k].value += part[k].value;
        total[k].square += part[k].square;
    }
}

class Integration {
public:
    Integration(const Curve& curve, const std::array<double, kOrders>& scales,
                const std::array<double, kOrders>& noise, std::size_t cost, Budget& budget)
        : curve_(curve), scales_(scales), noise_(noise), cost_(cost), budget_(budget)
    {
    }

    AllIntegrals over(const std::vector<double>& cuts)
    {
        const AllIntegrals whole = gauss(cuts.front(), cuts.back());
        if (cuts.size() == 2)
            return halved(cuts.front(), cuts.back(), whole, kDeepest);
        std::vector<AllIntegrals> parts;
        AllIntegrals sum{};
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i) {
            parts.push_back(gauss(cuts[i], cuts[i + 1]));
            add(sum, parts.back());
        }
        if (agree(whole, sum, cuts.back() - cuts.front()))
            return sum;
        for (std::size_t k = 0; k < kOrders; ++k)
            total_[k] = sum[k].square;
        sum = {};
        for (std::size_t i = 0; i + 1 < cuts.size(); ++i)
            add(sum, halved(cuts[i], cuts[i + 1], parts[i], kDeepest));
        return sum;
    }

private:
    static constexpr int kDeepest = 8;

    AllIntegrals halved(double from, double to, const AllIntegrals& whole, int depth)
    {
        const double middle = 0.5 * from + 0.5 * to;
        const AllIntegrals left = gauss(from, middle);
        const AllIntegrals right = gauss(middle, to);
        AllIntegrals sum = left;
        add(sum, right);
        if (depth == 0 || agree(whole, sum, to - from) || budget_.isSpent())
            return sum;
        sum = halved(from, middle, left, depth - 1);
        add(sum, halved(middle, to, right, depth - 1));
        return sum;
    }

    // Whether two estimates agree for each order with finite values.
    bool agree(const AllIntegrals& a, const AllIntegrals& b, double length) const
    {
        constexpr double kSame = 1e-13;
        constexpr double kLittle = 1e-17;
        for (std::size_t k = 0; k < kOrders; ++k) {
            const double room = kSame * b[k].square + kLittle * total_[k] + noise_[k] * noise_[k] * length;
            if (std::isfinite(a[k].square) && std::fabs(a[k].square - b[k].square) > room)
                return false;
        }
        return true;
    }

    AllIntegrals gauss(double from, double to)
    {
        constexpr std::size_t kPoints = 2 * kNodes.size();
        budget_.spend(kPoints * cost_);
        const double middle = 0.5 * from + 0.5 * to;
        const double half = 0.5 * to - 0.5 * from;
        std::array<double, kPoints> x;
        for (std::size_t i = 0; i < kNodes.size(); ++i) {
            x[kNodes.size() - 1 - i] = middle - half * kNodes[i];
            x[kNodes.size() + i] = middle + half * kNodes[i];
        }
        std::array<CurveValues, kPoints> values;
        curve_.evaluate(x.data(), kPoints, values.data());
        AllIntegrals sums{};
        for (std::size_t i = 0; i < kPoints; ++i) {
            const double weight =
                half * kWeights[i < kNodes.size() ? kNodes.size() - 1 - i : i - kNodes.size()];
            for (int k = 0; k < kOrders; ++k) {
                const double y = values[i][k] / scales_[static_cast<std::size_t>(k)];
                sums[static_cast<std::size_t>(k)].value += weight * y;
                sums[static_cast<std::size_t>(k)].square += weight * (y * y);
            }
        }
        return sums;
    }

    const Curve& curve_;
    const std::array<double, kOrders>& scales_;
    const std::array<double, kOrders>& noise_;
    std::size_t cost_;
    Budget& budget_;
    std::array<double, kOrders> total_{};  // the first estimate of the whole integral of each square
};

}  // namespace

AllIntegrals integrate(const Curve& curve, const std::vector<double>& cuts,
                       const std::array<double, kOrders>& scales, const std::array<double, kOrders>& noise,
                       std::size_t cost, Budget& budget)
{
    return Integration(curve, scales, noise, cost, budget).over(cuts);
}

}  // namespace mf::analysis
