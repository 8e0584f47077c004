// SPDX-FileCopyrightText: The Patchloom authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ProfileTables.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

cmsStage* makeCurveStage(Curves const& curves)
{
    cmsStage* const stage =
        cmsStageAllocToneCurves(nullptr, static_cast<cmsUInt32Number>(curves.size()), curves.data());
    for (cmsToneCurve* const curve : curves)
        cmsFreeToneCurve(curve);
    return stage;
}

} // namespace

cmsUInt16Number encode(double value)
{
    return static_cast<cmsUInt16Number>(std::lround(std::clamp(value, 0.0, 1.0) * 0xffff));
}

std::array<cmsUInt16Number, 3> encode(Lab const& lab)
{
    constexpr double chromaRange = greatestChroma - leastChroma;
    return {encode(lab[0] / greatestLightness), encode((lab[1] - leastChroma) / chromaRange),
            encode((lab[2] - leastChroma) / chromaRange)};
}

cmsToneCurve* makeCurve(Axis const& axis, double first, double last, unsigned entries)
{
    Table16 table;
    for (unsigned i = 0; i < entries; ++i) {
        double const coordinate = first + (last - first) * i / (entries - 1);
        table.push_back(encode(axis.positionOf(coordinate) / static_cast<double>(axis.getCount() - 1)));
    }
    return cmsBuildTabulatedToneCurve16(nullptr, entries, table.data());
}

Curves straightCurves(std::size_t count)
{
    Curves curves(count);
    std::ranges::generate(curves, [] { return makeCurve(Axis({0, 1}), 0, 1, 2); });
    return curves;
}

Pipeline makePipeline(Curves const& inputCurves, std::size_t nodes, Table16 const& table, Curves const& outputCurves)
{
    auto const inputs = static_cast<cmsUInt32Number>(inputCurves.size());
    auto const outputs = static_cast<cmsUInt32Number>(outputCurves.size());
    Pipeline pipeline(cmsPipelineAlloc(nullptr, inputs, outputs), &cmsPipelineFree);
    cmsPipelineInsertStage(pipeline.get(), cmsAT_END, makeCurveStage(inputCurves));
    cmsPipelineInsertStage(
        pipeline.get(), cmsAT_END,
        cmsStageAllocCLut16bit(nullptr, static_cast<cmsUInt32Number>(nodes), inputs, outputs, table.data()));
    cmsPipelineInsertStage(pipeline.get(), cmsAT_END, makeCurveStage(outputCurves));
    return pipeline;
}
