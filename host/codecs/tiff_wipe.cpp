#include "host/codecs/tiff_wipe.h"

#include "host/codecs/tiff_directory.h"
#include "host/codecs/tiff_open.h"

#include <algorithm>
#include <vector>

// Where pixels lie in the file.
struct FilePart {
    uint64_t at, end;
};

static void addParts(TIFF* file, std::vector<FilePart>* parts)
{
    const bool tiled = TIFFIsTiled(file);
    uint64_t *places = nullptr, *sizes = nullptr;
    if (!TIFFGetField(file, tiled ? TIFFTAG_TILEOFFSETS : TIFFTAG_STRIPOFFSETS, &places) || !places) return;
    if (!TIFFGetField(file, tiled ? TIFFTAG_TILEBYTECOUNTS : TIFFTAG_STRIPBYTECOUNTS, &sizes) || !sizes) return;
    const uint32_t count = tiled ? TIFFNumberOfTiles(file) : TIFFNumberOfStrips(file);
    for (uint32_t i = 0; i < count; ++i)
        parts->push_back({places[i], places[i] + sizes[i]});
}

static std::vector<FilePart> partsOf(const wchar_t* path, bool allPages)
{
    std::vector<FilePart> parts;
    TIFF* file = openTiff(path, "r");
    if (!file) return parts;
    do
        addParts(file, &parts);
    while (allPages && TIFFReadDirectory(file));
    TIFFClose(file);
    return parts;
}

// Overlapping ones become one, so that both their beginnings and their ends ascend.
static std::vector<FilePart> inOrder(std::vector<FilePart> parts)
{
    std::sort(parts.begin(), parts.end(), [](const FilePart& one, const FilePart& other) { return one.at < other.at; });
    std::vector<FilePart> joined;
    for (const FilePart& part : parts) {
        if (joined.empty() || joined.back().end < part.at)
            joined.push_back(part);
        else
            joined.back().end = std::max(joined.back().end, part.end);
    }
    return joined;
}

static bool reachesInto(const std::vector<FilePart>& joined, const FilePart& part)
{
    const auto next = std::upper_bound(joined.begin(), joined.end(), part.at,
                                       [](uint64_t at, const FilePart& other) { return at < other.end; });
    return next != joined.end() && next->at < part.end;
}

bool wipeUnused(const wchar_t* output, const wchar_t* original)
{
    const std::vector<FilePart> used = inOrder(partsOf(output, true));
    FILE* file = _wfopen(output, L"r+b");
    bool done = file != nullptr;
    for (const FilePart& part : partsOf(original, false)) {
        if (reachesInto(used, part)) continue;
        done = done && wipeBytes(file, part.at, part.end - part.at);
    }
    return file && fclose(file) == 0 && done;
}
