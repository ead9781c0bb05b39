// Runs one dab both ways: through the library's kernels on guarded images, and through the reference.
#pragma once

#include "tests/unit/pure/guarded_image.h"
#include "tools/kernels/brush_kernels.h"
#include "tools/kernels/dab_placement.h"
#include "tools/kernels/patch_kernel.h"
#include "tools/kernels/rubber_kernels.h"
#include "tools/kernels/smooth_kernel.h"
#include "tools/kernels/spray_kernels.h"

struct PaintingBench {
    reference::Scene scene;
    reference::Grid mask;
    GuardedImage image, strokeStart, original, patch;
    GuardedMap coverage, maskMap;
    std::vector<uint8_t> onlyRead;  // what a kernel only reads, as it was given
};

inline std::vector<uint8_t> onlyReadBytes(const PaintingBench& bench)
{
    std::vector<uint8_t> bytes;
    for (const std::vector<uint8_t>* part :
         {&bench.strokeStart.bytes, &bench.original.bytes, &bench.patch.bytes, &bench.maskMap.bytes})
        bytes.insert(bytes.end(), part->begin(), part->end());
    return bytes;
}

inline PaintingBench paintingBench(const reference::Scene& scene, const reference::Grid& mask)
{
    PaintingBench bench = {scene,
                           mask,
                           imageOf(scene.image),
                           imageOf(scene.strokeStart),
                           imageOf(scene.original),
                           imageOf(scene.patch),
                           mapOf(scene.coverage),
                           mapOf(mask),
                           {}};
    bench.onlyRead = onlyReadBytes(bench);
    return bench;
}

inline Rgb rgbOf(reference::Pixel colour)
{
    return {(uint8_t)colour.red, (uint8_t)colour.green, (uint8_t)colour.blue};
}

inline void layKernelDab(PaintingBench& bench, const reference::Dab& dab)
{
    const int width = bench.mask.width, height = bench.mask.height;
    const DabPlacement placed = placeDab({dab.left, dab.top, dab.left + width, dab.top + height}, width, height,
                                         bench.image.width, bench.image.height);
    const BitsView image = bench.image.view();
    const MapView mask = bench.maskMap.view();
    const Rgb colour = rgbOf(dab.colour);
    switch (dab.tool) {
    case reference::BRUSH:
        if (dab.soft)
            softBrushKernel(image, bench.strokeStart.view(), placed, mask, bench.coverage.view(), colour, dab.opacity);
        else
            hardBrushKernel(image, placed, mask, bench.coverage.view(), colour, dab.opacity);
        break;
    case reference::SMOOTH: smoothKernel(image, placed, mask, dab.opacity); break;
    case reference::PATCH: patchKernel(image, placed, mask, bench.patch.view(), dab.opacity); break;
    case reference::RUBBER:
        (dab.soft ? softRubberKernel : hardRubberKernel)(image, placed, mask, bench.original.view(), dab.opacity);
        break;
    case reference::SPRAY:
        (dab.soft ? softSprayKernel : hardSprayKernel)(image, placed, mask, colour, dab.opacity);
        break;
    }
}

// Every byte: pixels, padding, guards, coverage; and what a kernel only reads.
inline bool sameBytes(const PaintingBench& bench)
{
    return imageOf(bench.scene.image).bytes == bench.image.bytes &&
           mapOf(bench.scene.coverage).bytes == bench.coverage.bytes && onlyReadBytes(bench) == bench.onlyRead;
}

// Lays the dab both ways and compares.
inline bool dabMatches(PaintingBench& bench, const reference::Dab& dab)
{
    reference::layDab(bench.scene, dab, bench.mask);
    layKernelDab(bench, dab);
    return sameBytes(bench);
}
