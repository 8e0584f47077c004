// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Prints the orders that both searches find for some charts. Every build prints the same.

#include "BestOrder.h"
#include "OrderSearch.h"

#include <bit>
#include <cstdint>
#include <iostream>
#include <random>

namespace
{

// Whole numbers: no distribution, whose numbers could differ between libraries.
OrderTask taskOf(IntSize grid, std::mt19937& generator)
{
    auto const upTo = [&](unsigned limit) { return static_cast<float>(generator() % limit); };
    OrderTask task{grid, {{95, 0, -2}}, {}, {}};
    for (int cell = 0; cell < grid.width * grid.height; ++cell) {
        task.colors.push_back({{upTo(101), upTo(161) - 80, upTo(161) - 80}});
        task.takesPart.push_back(true);
    }
    return task;
}

void print(float value)
{
    std::cout << ' ' << std::bit_cast<std::uint32_t>(value);
}

void printOrders(OrderTask const& task)
{
    OrderSearch search(task);
    print(search.run());
    for (int y = 0; y < task.grid.height; ++y)
        for (int x = 0; x < task.grid.width; ++x)
            std::cout << ' ' << search.getPatchAt({x, y});
    BestOrder const best = findBestOrder(task, {1, 2, {}});
    print(best.smallest);
    print(best.bound);
    for (int const patch : best.patchAt)
        std::cout << ' ' << patch;
    std::cout << '\n';
}

} // namespace

int main()
{
    std::mt19937 generator(1);
    for (IntSize const grid : {IntSize{1, 7}, IntSize{3, 5}, IntSize{4, 24}, IntSize{5, 25}, IntSize{9, 16}})
        printOrders(taskOf(grid, generator));
}
