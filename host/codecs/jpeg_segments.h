// What stands in a JPEG file beside the picture: comments, camera data, profile.
#pragma once

#include "host/codecs/jpeg_errors.h"

// Has all segments saved that the functions below look for, and the comments. Before jpeg_read_header.
void saveJpegSegments(jpeg_decompress_struct* input);

// Copies what the saved segments tell.
void collectJpegFacts(const jpeg_decompress_struct& input, PhotoFacts* facts);

// Writes the saved segments with what they say about size, turn and preview brought up to date.
void copyJpegSegments(const jpeg_decompress_struct& input, jpeg_compress_struct* output, const EditedPhoto& photo);

// The segments for camera data and profile that came from a file of another format.
void writeJpegFacts(jpeg_compress_struct* output, const PhotoFacts& facts, const EditedPhoto& photo);
