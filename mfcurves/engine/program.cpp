// SPDX-License-Identifier: MIT

#include "mfcurves/engine/program.h"

#include <algorithm>
#include <type_traits>

namespace mf::engine {
namespace {

// Hands out arrays of one piece of memory, with elements that are not set yet.
class Places {
public:
    explicit Places(std::byte* memory) : next_(memory) {}

    template <class T>
    T* take(std::size_t count)
    {
        static_assert(std::is_trivially_copyable_v<T>);
        T* const place = reinterpret_cast<T*>(next_);
        next_ += count * sizeof(T);
        return place;
    }

private:
    std::byte* next_;
};

}  // namespace

// One piece of memory holds everything, the arrays with the larger alignment first.
Program::Program(const Draft& draft) : registers_(draft.registers), parameters_(draft.parameters)
{
    std::size_t numbers = 0;
    std::size_t listed = 0;
    for (const Draft::Entry& entry : draft.entries) {
        numbers += entry.numbers;
        listed += entry.listed;
    }
    size_ = draft.entries.size() * sizeof(Step) + numbers * sizeof(double) +
            draft.constants.size() * sizeof(Draft::Constant) + draft.results.size() * sizeof(Order) +
            listed * sizeof(std::uint32_t);
    memory_ = std::make_unique_for_overwrite<std::byte[]>(size_);

    Places places(memory_.get());
    Step* const steps = places.take<Step>(draft.entries.size());
    double* number = places.take<double>(numbers);
    auto* const constants = places.take<Draft::Constant>(draft.constants.size());
    Order* const orders = places.take<Order>(draft.results.size());
    auto* list = places.take<std::uint32_t>(listed);

    for (std::size_t i = 0; i < draft.entries.size(); ++i) {
        const Draft::Entry& entry = draft.entries[i];
        Step& step = steps[i] = entry.step;
        step.constants = number;
        number = std::copy_n(draft.numbers.begin() + entry.firstNumber, entry.numbers, number);
        if (entry.listed != 0)
            step.list = list;
        list = std::copy_n(draft.lists.begin() + entry.firstInList, entry.listed, list);
    }
    std::ranges::copy(draft.constants, constants);
    for (std::size_t order = 0; order < draft.results.size(); ++order) {
        const auto isNeeded = [&](const Draft::Entry& entry) {
            return entry.order <= static_cast<int>(order);
        };
        orders[order] = {static_cast<std::uint32_t>(std::ranges::count_if(draft.entries, isNeeded)),
                         draft.results[order]};
    }
    steps_ = {steps, draft.entries.size()};
    constants_ = {constants, draft.constants.size()};
    orders_ = {orders, draft.results.size()};
}

bool Program::isComputed(int order) const
{
    const std::uint32_t result = orders_[order].result;
    return result >= parameters_ &&
           std::ranges::find(constants_, result, &Draft::Constant::target) == constants_.end();
}

}  // namespace mf::engine
