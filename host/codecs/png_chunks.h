// What stands in a PNG file beside the pixels and what the library writes itself.
#pragma once

#include "host/codecs/photo_codec.h"

#include <png.h>

struct PngChunk {
    std::string name;
    std::vector<uint8_t> bytes;
    bool behindPixels;
};

// The file is at its start again afterwards.
std::vector<PngChunk> readPngChunks(FILE* file);

// Those for camera data, profile and resolution that came from a file of another format.
std::vector<PngChunk> pngChunksOf(const PhotoFacts& facts, const EditedPhoto& photo);

// Brings what they say about size, turn and preview up to date, and drops what does not fit the new kind of pixels.
// Kinds are PNG_COLOR_TYPE_...; swapped: the picture is turned by a quarter.
void updatePngChunks(std::vector<PngChunk>* chunks, int oldKind, int newKind, const EditedPhoto& photo, bool swapped);

// Where in the file a chunk has its place.
enum class PngPlace { BeforePalette, BeforePixels, BehindPixels };

// Writes those that belong there.
void writePngChunks(png_structp output, const std::vector<PngChunk>& chunks, PngPlace place);
