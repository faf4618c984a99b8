#include "Scene.h"

#include "EffectCatalog.h"
#include "TextLayout.h"
#include "ToolError.h"
#include "ValueParser.h"

#include <nlohmann/json.hpp>

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

using nlohmann::json;

namespace LmTextTool {

namespace {

const char* const kKeys[] = {"text",       "font",    "size",  "color",    "bold",       "italic",
                             "width",      "height",  "padding", "gravity", "align",     "lineSpacing",
                             "wrap",       "maxLines", "background", "lineBackground", "effects", "clipToAdvance"};

std::string describe(const json& v)
{
    std::string s = v.dump();
    return s.size() > 40 ? s.substr(0, 37) + "..." : s;
}

// A JSON scalar as the text the command line would carry.
std::string scalarText(const json& v, const std::string& what)
{
    if (v.is_string()) return v.get<std::string>();
    if (v.is_number_integer()) return std::to_string(v.get<long long>());
    if (v.is_number()) {
        std::ostringstream out;
        out.precision(17);
        out << v.get<double>();
        return out.str();
    }
    throw ToolError::usage(what + ": expected a number or a string, got " + describe(v));
}

double numberOf(const json& v, const std::string& what)
{
    if (!v.is_number()) throw ToolError::usage(what + ": expected a number, got " + describe(v));
    return ValueParser::parseNumber(scalarText(v, what), what);
}

int intOf(const json& v, const std::string& what)
{
    if (!v.is_number()) throw ToolError::usage(what + ": expected a whole number, got " + describe(v));
    return ValueParser::parseInt(scalarText(v, what), what);
}

bool boolOf(const json& v, const std::string& what)
{
    if (!v.is_boolean()) throw ToolError::usage(what + ": expected true or false, got " + describe(v));
    return v.get<bool>();
}

std::string stringOf(const json& v, const std::string& what)
{
    if (!v.is_string()) throw ToolError::usage(what + ": expected a string, got " + describe(v));
    return v.get<std::string>();
}

std::vector<StopValue> stopsOf(const json& v, const std::string& what)
{
    std::vector<StopValue> stops;
    for (size_t i = 0; i < v.size(); ++i) {
        const json& s = v[i];
        std::string label = what + "[" + std::to_string(i) + "]";
        if (!s.is_object()) throw ToolError::usage(label + ": expected {\"color\": ..., \"position\": ...}");
        StopValue stop;
        stop.position = v.size() == 1 ? 0.0 : (double)i / (double)(v.size() - 1);
        for (auto it = s.begin(); it != s.end(); ++it) {
            std::string key = label + "." + it.key();
            if (it.key() == "color" || it.key() == "colour")
                stop.colour = ValueParser::parseColour(stringOf(it.value(), key), key);
            else if (it.key() == "position") stop.position = numberOf(it.value(), key);
            else if (it.key() == "opacity") stop.opacity = numberOf(it.value(), key);
            else throw ToolError::usage(key + ": unknown key; valid keys: color, position, opacity");
        }
        stops.push_back(stop);
    }
    return stops;
}

EffectRequest effectOf(const json& v, const std::string& what)
{
    if (!v.is_object() || !v.contains("type"))
        throw ToolError::usage(what + ": expected an object with a \"type\" (one of " + EffectCatalog::names() + ")");
    std::string type = stringOf(v["type"], what + ".type");
    EffectRequest request(EffectCatalog::require(type, what), what + " (" + type + ")");
    for (auto it = v.begin(); it != v.end(); ++it) {
        if (it.key() == "type") continue;
        std::string key = what + "." + it.key();
        if (it.value().is_array()) request.setStops(it.key(), stopsOf(it.value(), key));
        else request.set(it.key(), scalarText(it.value(), key));
    }
    return request;
}

void applyKey(Scene& scene, const std::string& key, const json& v, const std::string& what)
{
    if (key == "text") scene.text = stringOf(v, what);
    else if (key == "font") scene.font = stringOf(v, what);
    else if (key == "size") scene.size = numberOf(v, what);
    else if (key == "color") scene.color = ValueParser::parseColour(stringOf(v, what), what);
    else if (key == "bold") scene.bold = boolOf(v, what);
    else if (key == "italic") scene.italic = boolOf(v, what);
    else if (key == "width") scene.width = intOf(v, what);
    else if (key == "height") scene.height = intOf(v, what);
    else if (key == "padding") {
        if (v.is_array()) {
            std::string joined;
            for (const json& p : v) joined += (joined.empty() ? "" : ",") + scalarText(p, what);
            Scene::parsePadding(joined, what, scene.padding);
        } else {
            Scene::parsePadding(scalarText(v, what), what, scene.padding);
        }
    } else if (key == "gravity") scene.gravity = Scene::parseGravity(scalarText(v, what), what);
    else if (key == "align") scene.align = Scene::parseAlign(stringOf(v, what), what);
    else if (key == "lineSpacing") scene.lineSpacing = numberOf(v, what);
    else if (key == "wrap") scene.wrap = boolOf(v, what);
    else if (key == "clipToAdvance") scene.clipToAdvance = boolOf(v, what);
    else if (key == "maxLines") scene.maxLines = intOf(v, what);
    else if (key == "background") scene.background = ValueParser::parseColour(stringOf(v, what), what);
    else if (key == "lineBackground") {
        scene.lineBackground = ValueParser::parseColour(stringOf(v, what), what);
        scene.lineBackgroundSet = true;
    } else if (key == "effects") {
        if (!v.is_array()) throw ToolError::usage(what + ": expected a list of effects");
        for (size_t i = 0; i < v.size(); ++i)
            scene.effects.push_back(effectOf(v[i], what + "[" + std::to_string(i) + "]"));
    } else {
        throw ToolError::usage(what + ": unknown key; valid keys: " + Scene::keyNames());
    }
}

} // namespace

std::string Scene::keyNames()
{
    std::string out;
    for (const char* k : kKeys) out += (out.empty() ? "" : ", ") + std::string(k);
    return out;
}

Scene Scene::load(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in) throw ToolError::failure("cannot read scene '" + path + "': " + std::strerror(errno));
    // The last key read names the place of a parse failure; a number past double range is one.
    std::string key;
    auto track = [&key](int, json::parse_event_t event, json& parsed) {
        if (event == json::parse_event_t::key) key = parsed.get<std::string>();
        return true;
    };
    json doc;
    try {
        doc = json::parse(in, track);
    } catch (const json::exception& e) {
        throw ToolError::usage("bad scene '" + path + "'" + (key.empty() ? "" : " at key \"" + key + "\"") + ": " +
                               e.what());
    }
    if (!doc.is_object()) throw ToolError::usage("bad scene '" + path + "': the top level is not an object");
    Scene scene;
    for (auto it = doc.begin(); it != doc.end(); ++it) applyKey(scene, it.key(), it.value(), path + ": " + it.key());
    return scene;
}

int Scene::parseGravity(const std::string& text, const std::string& what)
{
    static const std::pair<const char*, int> names[] = {
        {"left", 0x03},   {"right", 0x05},   {"center_horizontal", 0x01}, {"top", 0x30},
        {"bottom", 0x50}, {"center_vertical", 0x10}, {"fill_vertical", 0x70}, {"center", 0x11},
        {"start", 0x03},  {"end", 0x05},
    };
    bool numeric = !text.empty() && text.find_first_not_of("0123456789xXabcdefABCDEF") == std::string::npos;
    if (numeric) {
        char* end = nullptr;
        long v = std::strtol(text.c_str(), &end, 0);
        if (*end == '\0' && v >= 0 && v <= 0xFFFF) return (int)v;
    }
    int gravity = 0;
    size_t from = 0;
    while (true) {
        size_t bar = text.find('|', from);
        std::string token = text.substr(from, bar == std::string::npos ? std::string::npos : bar - from);
        bool found = false;
        for (const auto& n : names)
            if (token == n.first) {
                gravity |= n.second;
                found = true;
            }
        if (!found) {
            std::string valid;
            for (const auto& n : names) valid += (valid.empty() ? "" : ", ") + std::string(n.first);
            throw ToolError::usage(what + ": unknown gravity '" + token + "'; valid: " + valid +
                                   " (join with |, e.g. left|bottom)");
        }
        if (bar == std::string::npos) break;
        from = bar + 1;
    }
    // A side named alone keeps the other axis at its start, as a view does.
    if ((gravity & 0x07) == 0) gravity |= 0x03;
    if ((gravity & 0x70) == 0) gravity |= 0x30;
    return gravity;
}

int Scene::parseAlign(const std::string& text, const std::string& what)
{
    if (text == "left") return TextLayout::kLeft;
    if (text == "center" || text == "centre") return TextLayout::kCenter;
    if (text == "right") return TextLayout::kRight;
    throw ToolError::usage(what + ": unknown alignment '" + text + "'; valid: left, center, right");
}

void Scene::parsePadding(const std::string& text, const std::string& what, int out[4])
{
    std::vector<int> values;
    size_t from = 0;
    while (true) {
        size_t comma = text.find(',', from);
        int v = ValueParser::parseInt(text.substr(from, comma == std::string::npos ? std::string::npos : comma - from),
                                      what);
        if (v < 0) throw ToolError::usage(what + ": padding cannot be negative");
        values.push_back(v);
        if (comma == std::string::npos) break;
        from = comma + 1;
    }
    if (values.size() == 1) values.assign(4, values[0]);
    else if (values.size() == 2) values = {values[0], values[1], values[0], values[1]};
    if (values.size() != 4)
        throw ToolError::usage(what + ": padding is N, H,V or LEFT,TOP,RIGHT,BOTTOM, not '" + text + "'");
    for (int i = 0; i < 4; ++i) out[i] = values[(size_t)i];
}

} // namespace LmTextTool
