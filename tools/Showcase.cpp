#include "Showcase.h"

#include "EffectCatalog.h"
#include "Scene.h"
#include "SceneRenderer.h"
#include "ToolError.h"

#include <algorithm>

namespace LmTextTool {

namespace {

const unsigned kPageColour = 0xFFFFFFFFu;
const unsigned kCellColour = 0xFFEEF1F5u;
const unsigned kLabelColour = 0xFF333A44u;
const int kGap = 16;
const int kCellPadding = 18;
const int kLabelGap = 10;

// The look of each cell in the showcase: the kind, its parameters, the text colour under it and
// the label (the kind's name when null; kinds with several looks name each).
struct Look {
    const char* effect;
    const char* params;
    unsigned textColour;
    const char* label = nullptr;
    // A second effect drawn with the first, where the first alone would not show its look.
    const char* withEffect = nullptr;
    const char* withParams = nullptr;
};

const Look kLooks[] = {
    {"stroke", "size=4,color=#1D2B64,position=outside", 0xFFFFFFFFu},
    {"outer-shadow", "angle=120,distance=6,size=6,color=#000000,opacity=0.6", 0xFF2B59C3u},
    {"inner-shadow", "angle=120,distance=4,size=4,color=#000000,opacity=0.8", 0xFF7FA7F5u},
    {"outer-glow", "size=12,color=#FFB000,opacity=1", 0xFF5A2D0Cu},
    // Alone, an inner glow fills the text box (the one-pass draw order keeps no glyph clip); a
    // centre stroke switches the stack to two passes, which clip it to the glyphs.
    {"inner-glow", "size=8,color=#FFF4A0,opacity=1", 0xFFD9480Fu, "inner-glow (+ centre stroke)", "stroke",
     "size=1,color=#D9480F,position=centre"},
    {"linear-gradient", "angle=90,stops=#FF5F6D@0+#FFC371@1", 0xFF000000u},
    {"radial-gradient", "scale=1,stops=#FFF6B7@0+#F6416C@1", 0xFF000000u},
    {"pattern", "image=stripes,scale=1", 0xFF000000u},
    // An inner bevel lights the flat parts of the text box too (one-pass rendering does not clip
    // to the glyphs), which shows on the cell's grey; the outer styles draw around the glyphs.
    {"bevel", "style=outer,technique=chisel,size=5,depth=4,angle=120,altitude=40", 0xFF3C78D8u,
     "bevel (outer, chisel)"},
    {"bevel", "style=outer,size=6,depth=3,angle=120,altitude=30", 0xFF3C78D8u, "bevel (outer, smooth)"},
    {"emboss", "style=emboss,size=6,depth=3,angle=120,altitude=30", 0xFF3C78D8u, "emboss (smooth)"},
    {"emboss", "style=pillow,technique=chisel,size=6,depth=3,angle=120,altitude=30", 0xFF3C78D8u,
     "emboss (pillow, chisel)"},
};

Scene baseScene(const Showcase::Options& options, unsigned colour)
{
    Scene scene;
    scene.text = options.text;
    scene.font = options.font;
    scene.size = options.size;
    scene.color = colour;
    scene.padding[0] = scene.padding[2] = 4;
    return scene;
}

struct Tile {
    std::string label;
    RgbaImage image;
    RgbaImage labelImage;
};

RgbaImage renderLabel(const Showcase::Options& options, const std::string& text, double size)
{
    Scene label;
    label.text = text;
    label.font = options.font;
    label.size = size;
    label.color = kLabelColour;
    return SceneRenderer::render(label).image;
}

} // namespace

RgbaImage Showcase::render(const Options& options, std::vector<Cell>* cells, std::vector<std::string>* missing)
{
    std::vector<Tile> tiles;
    tiles.push_back({"text (plain)", SceneRenderer::render(baseScene(options, 0xFF1D2B64u)).image, {}});
    std::vector<std::string> shown;
    for (const Look& look : kLooks) {
        const EffectInfo& info = EffectCatalog::require(look.effect, "showcase");
        if (!EffectCatalog::isAvailable(info)) {
            if (missing && std::find(missing->begin(), missing->end(), info.name) == missing->end())
                missing->push_back(info.name);
            continue;
        }
        Scene scene = baseScene(options, look.textColour);
        EffectRequest request(info, "showcase " + info.name);
        request.assign(look.params);
        scene.effects.push_back(request);
        if (look.withEffect) {
            EffectRequest with(EffectCatalog::require(look.withEffect, "showcase"), std::string("showcase ") + look.withEffect);
            with.assign(look.withParams);
            scene.effects.push_back(with);
        }
        tiles.push_back({look.label ? look.label : info.name, SceneRenderer::render(scene).image, {}});
        shown.push_back(info.name);
    }
    // Effects stack: a fill, an outline and a shadow together, when the build has them.
    std::vector<std::string> combo;
    for (const char* name : {"linear-gradient", "stroke", "outer-shadow"})
        if (std::find(shown.begin(), shown.end(), name) != shown.end()) combo.push_back(name);
    if (combo.size() >= 2) {
        Scene scene = baseScene(options, 0xFFFFC000u);
        std::string label;
        for (const std::string& name : combo) {
            EffectRequest request(*EffectCatalog::find(name), "showcase " + name);
            for (const Look& look : kLooks)
                if (name == look.effect) request.assign(look.params);
            if (name == "stroke") request.assign("size=3");
            scene.effects.push_back(request);
            label += (label.empty() ? "" : " + ") + name;
        }
        tiles.push_back({label, SceneRenderer::render(scene).image, {}});
    }

    const double labelSize = std::max(12.0, options.size / 4);
    int tileW = 0, tileH = 0, labelH = 0;
    for (Tile& t : tiles) {
        t.labelImage = renderLabel(options, t.label, labelSize);
        tileW = std::max({tileW, (int)t.image.width(), (int)t.labelImage.width()});
        tileH = std::max(tileH, (int)t.image.height());
        labelH = std::max(labelH, (int)t.labelImage.height());
    }
    const int cellW = tileW + 2 * kCellPadding;
    const int cellH = tileH + kLabelGap + labelH + 2 * kCellPadding;
    const int columns = std::max(1, std::min(options.columns, (int)tiles.size()));
    const int rows = ((int)tiles.size() + columns - 1) / columns;

    RgbaImage title = renderLabel(options, "lmeffect: every effect in this build", labelSize * 1.5);
    const int top = kGap + (int)title.height() + kGap;
    const int width = std::max(kGap + columns * (cellW + kGap), (int)title.width() + 2 * kGap);
    const int height = top + rows * (cellH + kGap);
    RgbaImage page((unsigned)width, (unsigned)height, kPageColour);
    page.drawOver(title, kGap, kGap);

    for (size_t i = 0; i < tiles.size(); ++i) {
        const Tile& t = tiles[i];
        int x = kGap + (int)(i % (size_t)columns) * (cellW + kGap);
        int y = top + (int)(i / (size_t)columns) * (cellH + kGap);
        page.fillRect(x, y, cellW, cellH, kCellColour);
        // The render centred in its area, the label centred under it.
        page.drawOver(t.image, x + (cellW - (int)t.image.width()) / 2,
                      y + kCellPadding + (tileH - (int)t.image.height()) / 2);
        page.drawOver(t.labelImage, x + (cellW - (int)t.labelImage.width()) / 2, y + kCellPadding + tileH + kLabelGap);
        if (cells) cells->push_back({t.label, x, y, cellW, cellH});
    }
    return page;
}

} // namespace LmTextTool
