// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ColumnContrast.h"

#include <algorithm>
#include <cmath>

namespace
{

std::size_t at(int i)
{
    return static_cast<std::size_t>(i);
}

} // namespace

ColumnContrast::ColumnContrast(PairDifference const& pairDifference, ColumnOrder const& columnOrder)
    : difference(pairDifference), order(columnOrder), contrasts(at(order.countColumns()))
{
    for (int column = 0; column < order.countColumns(); ++column)
        renewWhole(column);
}

float ColumnContrast::deltaE(int cell, int other) const
{
    float const squared = squaredDeltaE(difference.colorOf(order[cell]), difference.colorOf(order[other]));
    return std::sqrt(squared < furthestSquaredDeltaE ? squared : furthestSquaredDeltaE);
}

float ColumnContrast::ofReverse(int column) const
{
    int const first = column * order.height;
    float sum = 0;
    for (int i = 0; i < order.height; ++i)
        sum += deltaE(first + i, first + order.height - 1 - i);
    return sum / static_cast<float>(order.height);
}

float ColumnContrast::ofShift(int column) const
{
    if (order.height == 1)
        return std::sqrt(furthestSquaredDeltaE);
    int const first = column * order.height;
    float sum = 0;
    for (int i = 1; i < order.height; ++i)
        sum += deltaE(first + i, first + i - 1);
    return sum / static_cast<float>(order.height - 1);
}

float ColumnContrast::ofPair(int column, int other) const
{
    float sum = 0;
    for (int i = 0; i < order.height; ++i)
        sum += deltaE(column * order.height + i, other * order.height + i);
    return sum / static_cast<float>(order.height);
}

int ColumnContrast::weakest() const
{
    return static_cast<int>(std::ranges::min_element(contrasts, {}, &Contrast::value) - contrasts.begin());
}

bool ColumnContrast::isAbove(int column, float value) const
{
    if (!(ofReverse(column) > value) || !(ofShift(column) > value))
        return false;
    for (int other = 0; other < order.countColumns(); ++other)
        if (other != column && !(ofPair(column, other) > value))
            return false;
    return true;
}

void ColumnContrast::renewWhole(int column)
{
    Contrast contrast{std::min(ofReverse(column), ofShift(column)), column};
    for (int other = 0; other < order.countColumns(); ++other)
        if (other != column) {
            float const value = ofPair(column, other);
            if (value < contrast.value)
                contrast = {value, other};
        }
    contrasts[at(column)] = contrast;
}

void ColumnContrast::renew(int column, int other)
{
    for (int i = 0; i < order.countColumns(); ++i) {
        Contrast& contrast = contrasts[at(i)];
        if (i == column || i == other || contrast.partner == column || contrast.partner == other) {
            renewWhole(i);
            continue;
        }
        for (int const changed : {column, other}) {
            float const value = ofPair(i, changed);
            if (value < contrast.value)
                contrast = {value, changed};
        }
    }
}

void raiseColumnContrast(ColumnContrast& contrast, CellSwap& cells, RandomNumbers& random, int effort)
{
    ColumnOrder const& order = cells.getOrder();
    int const columns = order.countColumns();
    int const patiences = 200;
    int const mostTries = std::min(effort, 1000) * (1000 + 2 * columns);
    int inVain = 0;
    for (int i = 0; i < mostTries && inVain < patiences; ++i, ++inVain) {
        int const weakest = contrast.weakest();
        float const value = contrast.of(weakest);
        if (cells.canMoveColumns() && random.below(8) == 0) {
            cells.turnColumn(weakest);
            if (contrast.isAbove(weakest, value)) {
                contrast.renew(weakest, weakest);
                inVain = 0;
            } else
                cells.turnColumn(weakest);
            continue;
        }
        int const cell = weakest * order.height + random.below(order.height);
        int const other = random.below(columns * order.height);
        if (other == cell || !cells.tryToSwap(cell, other))
            continue;
        if (contrast.isAbove(weakest, value) && contrast.isAbove(other / order.height, value)) {
            contrast.renew(weakest, other / order.height);
            inVain = 0;
        } else
            cells.swap(cell, other);
    }
}
