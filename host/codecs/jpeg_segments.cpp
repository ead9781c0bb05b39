#include "host/codecs/jpeg_segments.h"

#include "host/codecs/thumbnail.h"
#include "host/photo/exif_edit.h"

#include <algorithm>
#include <cstring>

constexpr size_t LONGEST_SEGMENT = 65533;
constexpr int EXIF_MARK_SIZE = 6;  // "Exif" and two zeros
constexpr int XMP_MARK_SIZE = 29;  // the name of its vocabulary and a zero
constexpr int ICC_MARK_SIZE = 14;  // "ICC_PROFILE", a zero, number and count of parts

// The kind of a saved segment, beyond its number.
enum class JpegSegment { Other, Jfif, Extension, Exif, Xmp, Icc, MultiPicture, Resources, Adobe };

struct SegmentMark {
    int marker;
    const char* start;
    size_t length;
    JpegSegment kind;
};
static const SegmentMark segmentMarks[] = {
    {JPEG_APP0, "JFIF\0", 5, JpegSegment::Jfif},
    {JPEG_APP0, "JFXX\0", 5, JpegSegment::Extension},
    {JPEG_APP0 + 1, "Exif\0\0", EXIF_MARK_SIZE, JpegSegment::Exif},
    {JPEG_APP0 + 1, "http://ns.adobe.com/xap/1.0/\0", XMP_MARK_SIZE, JpegSegment::Xmp},
    {JPEG_APP0 + 2, "ICC_PROFILE\0", 12, JpegSegment::Icc},
    {JPEG_APP0 + 2, "MPF\0", 4, JpegSegment::MultiPicture},
    {JPEG_APP0 + 13, "Photoshop 3.0\0", 14, JpegSegment::Resources},
    {JPEG_APP0 + 14, "Adobe", 5, JpegSegment::Adobe},
};

static JpegSegment kindOfSegment(const jpeg_marker_struct* segment)
{
    for (const SegmentMark& mark : segmentMarks)
        if (segment->marker == mark.marker && segment->data_length >= mark.length &&
            memcmp(segment->data, mark.start, mark.length) == 0)
            return mark.kind;
    return JpegSegment::Other;
}

static std::vector<uint8_t> bytesOf(const jpeg_marker_struct* segment)
{
    return std::vector<uint8_t>(segment->data, segment->data + segment->data_length);
}

static void writeSegment(jpeg_compress_struct* output, int marker, const std::vector<uint8_t>& bytes)
{
    if (bytes.size() <= LONGEST_SEGMENT) jpeg_write_marker(output, marker, bytes.data(), (unsigned)bytes.size());
}

static void writeExif(jpeg_compress_struct* output, const uint8_t* exif, size_t size, const EditedPhoto& photo)
{
    std::vector<uint8_t> segment = {'E', 'x', 'i', 'f', 0, 0};
    segment.insert(segment.end(), exif, exif + size);
    refreshExif(segment.data() + EXIF_MARK_SIZE, size, photo);
    writeSegment(output, JPEG_APP0 + 1, segment);
}

static void copySegment(const jpeg_marker_struct* segment, jpeg_compress_struct* output, const EditedPhoto& photo,
                        bool profileFits)
{
    std::vector<uint8_t> bytes = bytesOf(segment);
    switch (kindOfSegment(segment)) {
    case JpegSegment::Icc:
        if (!profileFits) return;
        break;
    case JpegSegment::Jfif:  // the library writes these two itself
    case JpegSegment::Adobe:
    case JpegSegment::Extension:     // a preview of the picture as it was
    case JpegSegment::MultiPicture:  // a list of pictures behind this one, which are left out
        return;
    case JpegSegment::Exif:
        writeExif(output, bytes.data() + EXIF_MARK_SIZE, bytes.size() - EXIF_MARK_SIZE, photo);
        return;
    case JpegSegment::Xmp: noteUprightInXmp(bytes.data(), bytes.size()); break;
    case JpegSegment::Resources: dropResourceThumbnails(&bytes); break;
    default: break;
    }
    writeSegment(output, segment->marker, bytes);
}

// Parts of a profile may come in any order.
static void collectProfile(const jpeg_decompress_struct& input, std::vector<uint8_t>* profile)
{
    for (int part = 1; part < 256; ++part) {
        const jpeg_marker_struct* segment = input.marker_list;
        while (segment && !(kindOfSegment(segment) == JpegSegment::Icc && segment->data_length > ICC_MARK_SIZE &&
                            segment->data[12] == part))
            segment = segment->next;
        if (!segment) return;
        profile->insert(profile->end(), segment->data + ICC_MARK_SIZE, segment->data + segment->data_length);
    }
}

static bool endsInsideBlock(const jpeg_decompress_struct& input)
{
    int across = 1, down = 1;
    for (int i = 0; i < input.num_components; ++i) {
        across = std::max(across, input.comp_info[i].h_samp_factor);
        down = std::max(down, input.comp_info[i].v_samp_factor);
    }
    return input.image_width % (8u * across) != 0 || input.image_height % (8u * down) != 0;
}

void saveJpegSegments(jpeg_decompress_struct* input)
{
    jpeg_save_markers(input, JPEG_COM, 0xFFFF);
    for (int number = 0; number < 16; ++number)
        jpeg_save_markers(input, JPEG_APP0 + number, 0xFFFF);
}

void collectJpegFacts(const jpeg_decompress_struct& input, PhotoFacts* facts)
{
    facts->grey = input.num_components == 1;
    facts->inks = input.num_components == 4;
    facts->uneven = endsInsideBlock(input);
    for (const jpeg_marker_struct* segment = input.marker_list; segment; segment = segment->next) {
        const std::vector<uint8_t> bytes = bytesOf(segment);
        switch (kindOfSegment(segment)) {
        case JpegSegment::Exif:
            if (facts->exif.empty()) facts->exif.assign(bytes.begin() + EXIF_MARK_SIZE, bytes.end());
            break;
        case JpegSegment::Xmp: facts->xmp.assign(bytes.begin() + XMP_MARK_SIZE, bytes.end()); break;
        case JpegSegment::MultiPicture: facts->pages = 2; break;
        case JpegSegment::Resources: facts->notes = true; break;
        default: facts->notes = facts->notes || segment->marker == JPEG_COM;
        }
    }
    facts->orientation = exifOrientation(facts->exif.data(), facts->exif.size());
    collectProfile(input, &facts->profile);
}

void copyJpegSegments(const jpeg_decompress_struct& input, jpeg_compress_struct* output, const EditedPhoto& photo)
{
    // A profile for grey or for inks says nothing about colours.
    const bool profileFits = input.num_components == output->num_components;
    for (const jpeg_marker_struct* segment = input.marker_list; segment; segment = segment->next)
        copySegment(segment, output, photo, profileFits);
}

void writeJpegFacts(jpeg_compress_struct* output, const PhotoFacts& facts, const EditedPhoto& photo)
{
    if (!facts.exif.empty()) writeExif(output, facts.exif.data(), facts.exif.size(), photo);
    if (!facts.xmp.empty()) {
        static const char mark[XMP_MARK_SIZE] = "http://ns.adobe.com/xap/1.0/";
        std::vector<uint8_t> segment(mark, mark + XMP_MARK_SIZE);
        segment.insert(segment.end(), facts.xmp.begin(), facts.xmp.end());
        noteUprightInXmp(segment.data(), segment.size());
        writeSegment(output, JPEG_APP0 + 1, segment);
    }
    if (!facts.profile.empty() && !facts.grey && !facts.inks)
        jpeg_write_icc_profile(output, facts.profile.data(), (unsigned)facts.profile.size());
}
