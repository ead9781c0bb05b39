// The footprint of one dab: the record's brushMask.
#pragma once

// Makes brushMask and maskScale fit the brush of width x height image pixels, the current tool, shape
// and edge. An unchanged mask is not made again. Returns 1, or 0 when memory is short.
int buildBrushMask(int width, int height);
