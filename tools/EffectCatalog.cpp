#include "EffectCatalog.h"

#include "EffectRequest.h"
#include "RgbaImage.h"
#include "ToolError.h"

#include "effect/LmEffect.h"
#include "effect/LmGradient.h"
#include "raster/LmBitmap.h"

#include <memory>

using LmFontEffect::LmBitmap;
using LmFontEffect::LmEffect;
using LmFontEffect::LmGradient;

namespace LmTextTool {

namespace {

std::vector<LmGradient> toGradient(const std::vector<StopValue>& stops)
{
    std::vector<LmGradient> out;
    for (const StopValue& s : stops) {
        LmGradient g;
        g.colour = s.colour;
        g.opacity = (float)s.opacity;
        g.position = (float)s.position;
        out.push_back(g);
    }
    return out;
}

// Blue and white diagonal stripes, 8 px wide: the pattern used when no image is given.
std::unique_ptr<LmBitmap> builtinPattern()
{
    const unsigned n = 16;
    auto tile = std::make_unique<LmBitmap>(n, n, 4u);
    if (!tile->pixels) return tile;
    for (unsigned y = 0; y < n; ++y)
        for (unsigned x = 0; x < n; ++x) {
            unsigned char* p = tile->pixels + (y * n + x) * 4;
            bool dark = ((x + y) / 8) % 2 == 0;
            p[0] = 255;
            p[1] = dark ? 0x1E : 0xF0;
            p[2] = dark ? 0x5A : 0xF0;
            p[3] = dark ? 0xC8 : 0xFF;
        }
    return tile;
}

// The pattern layer takes A, R, G, B bytes per pixel, not premultiplied.
std::unique_ptr<LmBitmap> loadPattern(const std::string& path)
{
    if (path.empty() || path == "stripes") return builtinPattern();
    RgbaImage image = RgbaImage::readPng(path);
    auto tile = std::make_unique<LmBitmap>(image.width(), image.height(), 4u);
    if (!tile->pixels) throw ToolError::failure("pattern image '" + path + "' is too large");
    const std::vector<uint8_t>& src = image.bytes();
    for (size_t i = 0, n = (size_t)image.width() * image.height(); i < n; ++i) {
        tile->pixels[i * 4 + 0] = src[i * 4 + 3];
        tile->pixels[i * 4 + 1] = src[i * 4 + 0];
        tile->pixels[i * 4 + 2] = src[i * 4 + 1];
        tile->pixels[i * 4 + 3] = src[i * 4 + 2];
    }
    return tile;
}

int addShadow(LmEffect& stack, const EffectRequest& s, bool inner)
{
    float a = s.number("angle"), d = s.number("distance"), z = s.number("size"), o = s.number("opacity");
    unsigned c = s.colour("color");
    return inner ? stack.addInnerShadowText(a, d, z, c, o) : stack.addOuterShadowText(a, d, z, c, o);
}

int addGlow(LmEffect& stack, const EffectRequest& s, bool inner)
{
    std::vector<LmGradient> stops = toGradient(s.stops("stops"));
    float z = s.number("size"), o = s.number("opacity");
    unsigned c = s.colour("color");
    int n = (int)stops.size();
    LmGradient* p = stops.empty() ? nullptr : stops.data();
    return inner ? stack.addInnerGlowText(z, c, o, n, p) : stack.addOuterGlowText(z, c, o, n, p);
}

int addLighting(LmEffect& stack, const EffectRequest& s, bool emboss)
{
    int style = s.integer("style"), dir = s.integer("direction"), tech = s.integer("technique");
    int soften = s.integer("soften");
    float size = s.number("size"), depth = s.number("depth"), o = s.number("opacity");
    float angle = s.number("angle"), alt = s.number("altitude");
    unsigned sc = s.colour("shadow-color"), hc = s.colour("highlight-color");
    float so = s.number("shadow-opacity"), ho = s.number("highlight-opacity");
    if (emboss) return stack.addEmbossText(style, size, depth, dir, tech, soften, o, angle, alt, sc, so, hc, ho);
    return stack.addBevelText(style, size, depth, dir, tech, soften, o, angle, alt, sc, so, hc, ho);
}

int addGradient(LmEffect& stack, const EffectRequest& s, bool radial)
{
    std::vector<LmGradient> stops = toGradient(s.stops("stops"));
    int n = (int)stops.size();
    LmGradient* p = stops.empty() ? nullptr : stops.data();
    if (radial) return stack.addRadialGradientText(s.number("scale"), s.number("opacity"), n, p);
    return stack.addLinearGradientText(s.number("angle"), s.number("scale"), s.number("opacity"), n, p);
}

int addPattern(LmEffect& stack, const EffectRequest& s)
{
    // The layer keeps a copy of the image, so ours can go when the call returns.
    std::unique_ptr<LmBitmap> tile = loadPattern(s.text("image"));
    return stack.addPatternText(tile.get(), s.number("scale"), s.number("opacity"));
}

ParamInfo number(const char* name, ParamRule rule, const char* def, const char* help)
{
    return {name, ParamType::Number, rule, def, help, {}};
}

ParamInfo colour(const char* name, const char* def, const char* help)
{
    return {name, ParamType::Colour, ParamRule::None, def, help, {}};
}

ParamInfo opacity(const char* name, const char* def)
{
    return number(name, ParamRule::Opacity, def, "opacity");
}

ParamInfo stops(const char* def, const char* help)
{
    return {"stops", ParamType::Stops, ParamRule::None, def, help, {}};
}

std::vector<ParamInfo> shadowParams()
{
    return {number("angle", ParamRule::Angle, "135", "direction of the light in degrees (90 puts the shadow below)"),
            number("distance", ParamRule::Pixels, "5", "offset of the shadow in pixels"),
            number("size", ParamRule::Pixels, "5", "blur radius in pixels"),
            colour("color", "#000000", "shadow colour"), opacity("opacity", "0.75")};
}

std::vector<ParamInfo> glowParams(const char* colourDefault)
{
    return {number("size", ParamRule::Pixels, "8", "reach of the glow in pixels"),
            colour("color", colourDefault, "glow colour when there are no stops"), opacity("opacity", "0.9"),
            stops("none", "colours from the edge outward, up to 256")};
}

std::vector<ParamInfo> lightingParams(std::vector<ParamChoice> styles, const char* styleDefault)
{
    return {{"style", ParamType::Choice, ParamRule::None, styleDefault, "where the slope lies", std::move(styles)},
            number("size", ParamRule::None, "6", "width of the slope in pixels"),
            number("depth", ParamRule::Depth, "3", "steepness of the slope"),
            {"direction", ParamType::Choice, ParamRule::None, "up", "up, or down (light mirrored)",
             {{"up", 1}, {"down", 0}}},
            {"technique", ParamType::Choice, ParamRule::None, "smooth", "rounded or sharp-edged slope",
             {{"smooth", 0}, {"chisel", 1}}},
            {"soften", ParamType::Integer, ParamRule::Soften, "0", "blur radius of the result", {}},
            opacity("opacity", "1"),
            number("angle", ParamRule::Angle, "120", "direction of the light in degrees"),
            number("altitude", ParamRule::Altitude, "30", "height of the light in degrees"),
            colour("shadow-color", "#000000", "colour of the side facing away from the light"),
            opacity("shadow-opacity", "0.75"),
            colour("highlight-color", "#FFFFFF", "colour of the side facing the light"),
            opacity("highlight-opacity", "0.75")};
}

std::vector<EffectInfo> buildCatalog()
{
    std::vector<EffectInfo> c;
    c.push_back({"stroke", 10, "outline around the glyphs",
                 {number("size", ParamRule::Pixels, "4", "width in pixels"),
                  colour("color", "#000000", "outline colour"), opacity("opacity", "1"),
                  {"position", ParamType::Choice, ParamRule::None, "outside", "where the outline lies",
                   {{"center", 0}, {"centre", 0}, {"outside", 1}, {"inside", 2}}},
                  {"extra", ParamType::Integer, ParamRule::None, "0", "kept in the key, read by no layer", {}}},
                 [](LmEffect& st, const EffectRequest& s) {
                     return st.addStrokeText(s.number("size"), s.colour("color"), s.number("opacity"),
                                             s.integer("extra"), s.integer("position"));
                 }});
    c.push_back({"outer-shadow", 1, "blurred, offset shadow behind the text", shadowParams(),
                 [](LmEffect& st, const EffectRequest& s) { return addShadow(st, s, false); }});
    c.push_back({"inner-shadow", 2, "shadow cut into the glyphs", shadowParams(),
                 [](LmEffect& st, const EffectRequest& s) { return addShadow(st, s, true); }});
    c.push_back({"outer-glow", 3, "soft halo around the glyphs", glowParams("#FFC000"),
                 [](LmEffect& st, const EffectRequest& s) { return addGlow(st, s, false); }});
    c.push_back({"inner-glow", 4, "light from the glyph edges inward", glowParams("#FFFF80"),
                 [](LmEffect& st, const EffectRequest& s) { return addGlow(st, s, true); }});
    c.push_back({"linear-gradient", 7, "fill with a colour ramp at an angle",
                 {number("angle", ParamRule::Angle, "90", "direction of the ramp in degrees"),
                  number("scale", ParamRule::Scale2, "1", "ramp length, 1 = the text box"),
                  opacity("opacity", "1"), stops("#FF3000@0+#FFD000@1", "ramp colours, up to 256")},
                 [](LmEffect& st, const EffectRequest& s) { return addGradient(st, s, false); }});
    c.push_back({"radial-gradient", 8, "fill with circles of colour from the centre",
                 {number("scale", ParamRule::Scale2, "1", "ramp length, 1 = the text box"),
                  opacity("opacity", "1"), stops("#FFFF60@0+#D00060@1", "ramp colours, up to 256")},
                 [](LmEffect& st, const EffectRequest& s) { return addGradient(st, s, true); }});
    c.push_back({"pattern", 11, "fill with a tiled image",
                 {{"image", ParamType::Image, ParamRule::None, "stripes", "PNG file, or stripes", {}},
                  number("scale", ParamRule::Scale10, "1", "tile scale"), opacity("opacity", "1")},
                 [](LmEffect& st, const EffectRequest& s) { return addPattern(st, s); }});
    c.push_back({"bevel", 5, "raised edges lit from one side",
                 lightingParams({{"outer", 0}, {"inner", 1}}, "inner"),
                 [](LmEffect& st, const EffectRequest& s) { return addLighting(st, s, false); }});
    c.push_back({"emboss", 6, "text pressed out of the surface",
                 lightingParams({{"emboss", 0}, {"pillow", 3}}, "emboss"),
                 [](LmEffect& st, const EffectRequest& s) { return addLighting(st, s, true); }});
    return c;
}

std::string rangeText(const ParamInfo& p)
{
    switch (p.rule) {
    case ParamRule::Opacity: return "0..1";
    case ParamRule::Pixels: return "0..100, whole";
    case ParamRule::Angle: return "0..359, wraps";
    case ParamRule::Altitude: return "0..89, wraps";
    case ParamRule::Scale2: return "0..2";
    case ParamRule::Scale10: return "0..10";
    case ParamRule::Depth: return "0..10";
    case ParamRule::Soften: return "0..16";
    case ParamRule::None: break;
    }
    switch (p.type) {
    case ParamType::Colour: return "colour";
    case ParamType::Stops: return "COLOUR[@POS][:OPACITY]+...";
    case ParamType::Image: return "path";
    case ParamType::Integer: return "integer";
    case ParamType::Number: return "number";
    case ParamType::Choice: {
        std::string names;
        for (const ParamChoice& ch : p.choices) names += (names.empty() ? "" : "|") + ch.name;
        return names;
    }
    }
    return "";
}

} // namespace

const std::vector<EffectInfo>& EffectCatalog::all()
{
    static const std::vector<EffectInfo> catalog = buildCatalog();
    return catalog;
}

const EffectInfo* EffectCatalog::find(const std::string& name)
{
    for (const EffectInfo& e : all())
        if (e.name == name) return &e;
    return nullptr;
}

const EffectInfo& EffectCatalog::require(const std::string& name, const std::string& origin)
{
    if (const EffectInfo* e = find(name)) return *e;
    throw ToolError::usage(origin + ": unknown effect '" + name + "'; valid effects: " + names());
}

std::string EffectCatalog::names()
{
    std::string out;
    for (const EffectInfo& e : all()) out += (out.empty() ? "" : ", ") + e.name;
    return out;
}

bool EffectCatalog::isAvailable(const EffectInfo& info)
{
    LmEffect scratch(nullptr);
    EffectRequest request(info, info.name);
    return info.add(scratch, request) >= 0;
}

std::vector<const EffectInfo*> EffectCatalog::available()
{
    std::vector<const EffectInfo*> out;
    for (const EffectInfo& e : all())
        if (isAvailable(e)) out.push_back(&e);
    return out;
}

int EffectCatalog::addTo(LmEffect& stack, const EffectRequest& request)
{
    int id = request.info().add(stack, request);
    if (id < 0) {
        std::string have;
        for (const EffectInfo* e : available()) have += (have.empty() ? "" : ", ") + e->name;
        throw ToolError::failure(request.origin() + ": effect '" + request.info().name +
                                 "' is not available in this build (available: " + (have.empty() ? "none" : have) +
                                 ")");
    }
    return id;
}

std::string EffectCatalog::helpText()
{
    std::string out = "Effects: --NAME KEY=VALUE,KEY=VALUE (or --NAME defaults); values outside a range are\n"
                      "clamped by the library and reported on stderr. Colours: #RGB, #RRGGBB, #AARRGGBB or a name.\n";
    for (const EffectInfo& e : all()) {
        out += "\n  --" + e.name + "    " + e.summary + "\n";
        for (const ParamInfo& p : e.params) {
            std::string line = "      " + p.name;
            line.resize(std::max<size_t>(line.size() + 1, 24), ' ');
            std::string range = rangeText(p);
            line += range;
            line.resize(std::max<size_t>(line.size() + 1, 52), ' ');
            out += line + p.help + " (default " + p.defaultText + ")\n";
        }
    }
    return out;
}

} // namespace LmTextTool
