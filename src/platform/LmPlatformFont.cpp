#include "platform/LmPlatformFont.h"

#include "foundation/Error.h"
#include "platform/LmAlphaCanvas.h"
#include "platform/LmPaint.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_BBOX_H
#include <hb.h>

#include <algorithm>
#include <cmath>
#include <new>

namespace LmFontEffect {

namespace {

// Outset of fake bold as a fraction of the text size: thin strokes at small sizes need a
// relatively larger push to read as bold, so the ratio falls from 1/24 at 9 px to 1/32 at
// 36 px and stays there.
float fakeBoldStrength(float size)
{
    const float lo = 9.0f, hi = 36.0f;
    const float ratioLo = 1.0f / 24.0f, ratioHi = 1.0f / 32.0f;
    float ratio;
    if (size <= lo) {
        ratio = ratioLo;
    } else if (size >= hi) {
        ratio = ratioHi;
    } else {
        ratio = ratioLo + (ratioHi - ratioLo) * (size - lo) / (hi - lo);
    }
    return size * ratio;
}

bool usableStyle(const LmGlyphStyle& style)
{
    return std::isfinite(style.size) && style.size > 0.0f && style.size <= LmPaint::kMaxTextSize &&
           std::isfinite(style.scaleX) && std::fabs(style.scaleX) <= 64.0f && std::isfinite(style.skewX) &&
           std::fabs(style.skewX) <= 64.0f;
}

FT_Fixed toFixed(double v) { return (FT_Fixed)std::lround(v * 65536.0); }

// Side of the square tiles a glyph is rasterised in: FreeType reports spans with a 16-bit x,
// so the rasteriser only ever sees coordinates local to one tile.
constexpr int64_t kTile = 16384;

struct SpanTarget {
    LmAlphaCanvas* canvas;
    int height;
    bool antiAlias;
    int64_t tileX;  // canvas column and y-up row of the tile's origin
    int64_t tileY;
};

// FreeType reports rows bottom-up (y up); the canvas counts rows top-down.
void mergeSpans(int y, int count, const FT_Span* spans, void* user)
{
    SpanTarget* t = static_cast<SpanTarget*>(user);
    const int row = (int)(t->height - 1 - (t->tileY + y));
    for (int i = 0; i < count; i++) {
        unsigned c = spans[i].coverage;
        if (!t->antiAlias) c = c >= 128 ? 255 : 0;
        if (c) t->canvas->mergeSpan((int)(t->tileX + spans[i].x), row, spans[i].len, c);
    }
}

int64_t floorPixel(FT_Pos v) { return (int64_t)(v >> 6); }
int64_t ceilPixel(FT_Pos v) { return (int64_t)((v + 63) >> 6); }

} // namespace

std::shared_ptr<LmPlatformFont> LmPlatformFont::MakeFromData(const unsigned char* data, size_t size, int index,
                                                             std::shared_ptr<const void> owner)
{
    // FreeType reads the upper 16 bits of the index as a variation instance and a negative one
    // as a query: neither is a collection index.
    if (!data || size == 0 || index < 0 || index > 0xFFFF || size > (size_t)0x7FFFFFFF) return nullptr;

    std::shared_ptr<LmPlatformFont> font(new (std::nothrow) LmPlatformFont());
    if (!font) {
        Error::SetError(Error::LM_ERR_PLATFORM);
        return nullptr;
    }
    font->mOwner = std::move(owner);
    if (FT_Init_FreeType(&font->mLibrary) != 0) {
        font->mLibrary = nullptr;
        return nullptr;
    }
    if (FT_New_Memory_Face(font->mLibrary, data, (FT_Long)size, index, &font->mFace) != 0) {
        font->mFace = nullptr;
        return nullptr;
    }
    FT_Face face = font->mFace;
    if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) return nullptr;

    hb_blob_t* blob = hb_blob_create(reinterpret_cast<const char*>(data), (unsigned)size, HB_MEMORY_MODE_READONLY,
                                     nullptr, nullptr);
    font->mHbFace = hb_face_create(blob, (unsigned)index);
    hb_blob_destroy(blob);
    font->mHbFont = hb_font_create(font->mHbFace);
    hb_font_make_immutable(font->mHbFont);

    font->mUnitsPerEm = face->units_per_EM;
    font->mAscender = face->ascender;
    font->mDescender = face->descender;
    return font;
}

LmPlatformFont::~LmPlatformFont()
{
    if (mHbFont) hb_font_destroy(mHbFont);
    if (mHbFace) hb_face_destroy(mHbFace);
    if (mFace) FT_Done_Face(mFace);
    if (mLibrary) FT_Done_FreeType(mLibrary);
}

uint32_t LmPlatformFont::GetGlyphId(uint32_t codePoint) const
{
    hb_codepoint_t glyph = 0;
    if (!hb_font_get_nominal_glyph(mHbFont, codePoint, &glyph)) return 0;
    return glyph;
}

bool LmPlatformFont::HasGlyph(uint32_t codePoint) const { return GetGlyphId(codePoint) != 0; }

float LmPlatformFont::GetAscent(float size) const
{
    if (!std::isfinite(size)) return 0.0f;
    return -(float)mAscender * size / (float)mUnitsPerEm;
}

float LmPlatformFont::GetDescent(float size) const
{
    if (!std::isfinite(size)) return 0.0f;
    return -(float)mDescender * size / (float)mUnitsPerEm;
}

bool LmPlatformFont::LoadOutline(uint32_t glyphId, const LmGlyphStyle& style) const
{
    if (!usableStyle(style) || glyphId >= (uint32_t)mFace->num_glyphs) return false;
    if (FT_Load_Glyph(mFace, glyphId, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0) return false;
    FT_GlyphSlot slot = mFace->glyph;
    if (slot->format != FT_GLYPH_FORMAT_OUTLINE || slot->outline.n_points == 0) return false;
    FT_Outline* outline = &slot->outline;

    // Font units to 26.6 pixels at the text size, then the outset, then the run's horizontal
    // scale and skew. In y-up outline space the y-down skew x' = x + k*y reads x' = x - k*y.
    const double unitsToPixels64 = (double)style.size * 64.0 / (double)mUnitsPerEm;
    FT_Matrix scale = {toFixed(unitsToPixels64), 0, 0, toFixed(unitsToPixels64)};
    FT_Outline_Transform(outline, &scale);
    if (style.embolden) {
        FT_Pos strength = (FT_Pos)std::lround(fakeBoldStrength(style.size) * 64.0f);
        FT_Outline_EmboldenXY(outline, strength, strength);
    }
    if (style.scaleX != 1.0f || style.skewX != 0.0f) {
        FT_Matrix shear = {toFixed(style.scaleX), toFixed(-(double)style.skewX), 0, 0x10000};
        FT_Outline_Transform(outline, &shear);
    }
    return true;
}

bool LmPlatformFont::GetGlyphBounds(uint32_t glyphId, const LmGlyphStyle& style, LmGlyphBox* box) const
{
    if (!box) return false;
    *box = LmGlyphBox();
    std::lock_guard<std::mutex> lock(mMutex);
    if (!LoadOutline(glyphId, style)) return false;
    FT_BBox bb;
    if (FT_Outline_Get_BBox(&mFace->glyph->outline, &bb) != 0) return false;
    box->left = (float)bb.xMin / 64.0f;
    box->right = (float)bb.xMax / 64.0f;
    box->top = -(float)bb.yMax / 64.0f;
    box->bottom = -(float)bb.yMin / 64.0f;
    return !box->empty();
}

void LmPlatformFont::DrawGlyph(uint32_t glyphId, const LmGlyphStyle& style, float x, float y,
                               LmAlphaCanvas* canvas) const
{
    if (!canvas || !canvas->pixels() || canvas->width() <= 0 || canvas->height() <= 0) return;
    // Keeps the 26.6 translation far inside the rasteriser's range.
    if (!std::isfinite(x) || !std::isfinite(y) || std::fabs(x) > 1.0e6f || std::fabs(y) > 1.0e6f) return;
    std::lock_guard<std::mutex> lock(mMutex);
    if (!LoadOutline(glyphId, style)) return;
    FT_Outline* outline = &mFace->glyph->outline;
    // Origin (x, y) in y-down canvas space is (x, height - y) in the rasteriser's y-up space;
    // only its fraction goes into the outline, the whole pixels stay with the tiles.
    const int h = canvas->height();
    const int64_t originX = std::llround((double)x * 64.0), originY = std::llround(((double)h - y) * 64.0);
    const int64_t ox = originX >> 6, oy = originY >> 6;
    FT_Outline_Translate(outline, (FT_Pos)(originX & 63), (FT_Pos)(originY & 63));
    FT_BBox box;
    FT_Outline_Get_CBox(outline, &box);
    // The glyph's pixels in canvas columns and y-up rows, cut to the canvas.
    const int64_t x0 = std::max<int64_t>(floorPixel(box.xMin) + ox, 0);
    const int64_t x1 = std::min<int64_t>(ceilPixel(box.xMax) + ox, canvas->width());
    const int64_t y0 = std::max<int64_t>(floorPixel(box.yMin) + oy, 0);
    const int64_t y1 = std::min<int64_t>(ceilPixel(box.yMax) + oy, h);

    SpanTarget target{canvas, h, style.antiAlias, 0, 0};
    FT_Raster_Params params = {};
    params.source = outline;
    params.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT | FT_RASTER_FLAG_CLIP;
    params.gray_spans = mergeSpans;
    params.user = &target;
    // Each tile moves the outline so that the tile's corner is the rasteriser's origin.
    int64_t shiftX = ox, shiftY = oy;
    for (int64_t ty = y0; ty < y1; ty += kTile) {
        for (int64_t tx = x0; tx < x1; tx += kTile) {
            FT_Outline_Translate(outline, (FT_Pos)((shiftX - tx) * 64), (FT_Pos)((shiftY - ty) * 64));
            shiftX = tx;
            shiftY = ty;
            target.tileX = tx;
            target.tileY = ty;
            params.clip_box.xMin = 0;
            params.clip_box.yMin = 0;
            params.clip_box.xMax = (FT_Pos)std::min<int64_t>(kTile, x1 - tx);
            params.clip_box.yMax = (FT_Pos)std::min<int64_t>(kTile, y1 - ty);
            FT_Outline_Render(mLibrary, outline, &params);
        }
    }
}

} // namespace LmFontEffect
