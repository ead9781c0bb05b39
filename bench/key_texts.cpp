#include "bench/key_texts.h"

#include <cstring>

// For every key whose name begins so; the first row that fits counts.
struct KeyText {
    const char* beginning;
    const char* text;
};

static const KeyText texts[] = {
    {"tone_scalar", "tone_24mp by the plain code"},
    {"tone_", "contrast and brightness of a whole photo, from one bitmap into another"},
    {"hls_scalar", "hls_24mp by the plain code"},
    {"hls_noise", "hls_24mp on noise: no two neighbours alike"},
    {"hls_preview", "the same for the preview of the contrast dialog"},
    {"hls_", "hue and saturation of a whole photo: every pixel goes through them"},
    {"dab_", "four Brush strokes across 3000 x 2000, edge and size as named, each laid as one segment"},
    {"pieces_", "the same strokes in pieces of 3 to 12 points, as pointers send them"},
    {"blur_patch", "the Smooth tool's dab at 2,000 places"},
    {"blur_", "the Smooth tool's blur over a whole photo, as one dab"},
    {"patch_", "dabs of Stamp and Spoonbill"},
    {"rubber_", "dabs of the Rubber"},
    {"spray_", "dabs of the Aerographe"},
    {"nearest_", "a photo scaled to the second size; counted are the result's pixels"},
    {"duplicate_", "a copy of a bitmap, made and freed"},
    {"mask_evenodd", "from 20,000 points to the mask of their outline"},
    {"masked_paste", "pixels merged into a photo through a mask"},
    {"select_close_", "a drawn outline of so many points is closed, lifted and shown"},
    {"select_move_", "a floating selection moved by seven pixels and shown"},
    {"select_resize_", "resized by twenty pixels and shown"},
    {"select_turn_", "turned by 31 degrees and shown"},
    {"select_flip_", "flipped, up and down and sideways in turn, and shown"},
    {"select_colour_", "a step of its hue and shown"},
    {"select_apply_", "merged into the photo and shown"},
    {"select_clear_", "put away, and the canvas shown without it"},
    {"outline_move_", "a move of the pointer while an outline of so many points is being drawn"},
    {"repaint_dab_floating_", "48 x 48 image pixels painted anew in the middle of such a floating selection"},
    {"repaint_dab_plain", "the same without a selection"},
    {"tiff_write_unflushed", "the same without waiting until it is on the disk"},
    {"tiff_write", "a selection written to a file, until its bytes are on the disk"},
    {"tiff_read", "the same file read"},
    {"press_24mp_plain_copy", "one copy of that photo, to compare with"},
    {"press_", "from the press of the button to its first dab on the canvas; counted are the photo's pixels"},
    {"moves_", "a Brush stroke of 48 x 48 in moves of 3 to 12 pixels, each shown at once, undo step included"},
    {"repaint_quarter", "a quarter of the canvas invalidated and painted again"},
    {"pan_step_floating_", "the same over a floating selection of so many points"},
    {"pan_step", "a step of panning at 200 %, up to the screen"},
    {"pan_", "the pixels of a canvas of 1000 x 700 at 200 %, from a photo of that size"},
    {"copy_canvas", "one copy of as many bytes, to compare with"},
    {"copy_warm", "memcpy between two warm buffers: tells how fast the machine is at the moment"},
    {"set_warm", "memset of a warm buffer"},
};

const char* textOfKey(const char* name)
{
    for (const KeyText& row : texts)
        if (strncmp(name, row.beginning, strlen(row.beginning)) == 0) return row.text;
    return nullptr;
}
