#include "EffectRequest.h"

#include "ToolError.h"

#include "foundation/LmConvert.h"

#include <algorithm>
#include <cmath>

using LmFontEffect::lmToInt;

namespace LmTextTool {

namespace {

const int kMaxStops = 256;

struct RuleRange {
    double low;
    double high;
    bool wraps;
};

RuleRange rangeOf(ParamRule rule)
{
    switch (rule) {
    case ParamRule::Opacity: return {0, 1, false};
    case ParamRule::Pixels: return {0, 100, false};
    case ParamRule::Angle: return {0, 359, true};
    case ParamRule::Altitude: return {0, 89, true};
    case ParamRule::Scale2: return {0, 2, false};
    case ParamRule::Scale10: return {0, 10, false};
    case ParamRule::Depth: return {0, 10, false};
    case ParamRule::Soften: return {0, 16, false};
    case ParamRule::None: break;
    }
    return {0, 0, false};
}

// Remainder with the sign of the dividend, then lifted into [0, m).
int wrapInto(int v, int m)
{
    int r = v % m;
    return r < 0 ? r + m : r;
}

// The value the library ends up with; the arithmetic is done on the float the add operation
// receives, so that truncation matches it to the bit.
double applyRule(ParamRule rule, double given)
{
    float v = (float)given;
    switch (rule) {
    case ParamRule::Opacity: return v > 1.0f ? 1.0f : (v > 0.0f ? v : 0.0f);
    case ParamRule::Pixels: return std::min(std::max(lmToInt(v), 0), 100);
    case ParamRule::Angle: return wrapInto(lmToInt(v), 360);
    case ParamRule::Altitude: return wrapInto(lmToInt(v), 90);
    case ParamRule::Scale2: v = std::min(v, 2.0f); return v > 0.0f ? v : 0.0f;
    case ParamRule::Scale10: v = std::min(v, 10.0f); return v > 0.0f ? v : 0.0f;
    case ParamRule::Depth: return v < 0.0f ? 0.0f : std::min(v, 10.0f);
    case ParamRule::Soften: return std::min(std::max(lmToInt(v), 0), 16);
    case ParamRule::None: break;
    }
    return given;
}

// Stop positions keep two decimals, then clamp like an opacity.
double stopPosition(double given)
{
    float p = (float)lmToInt((float)given * 100) / 100;
    return applyRule(ParamRule::Opacity, p);
}

std::string noteFor(const std::string& label, ParamRule rule, double given, double used)
{
    RuleRange range = rangeOf(rule);
    std::string head = label + "=" + ValueParser::formatNumber(given);
    std::string span = ValueParser::formatNumber(range.low) + ".." + ValueParser::formatNumber(range.high);
    if (range.wraps) return head + " wraps to " + ValueParser::formatNumber(used) + " (range " + span + ")";
    if (given < range.low || given > range.high)
        return head + " is outside " + span + "; clamped to " + ValueParser::formatNumber(used);
    return head + " is truncated to " + ValueParser::formatNumber(used);
}

bool differs(double given, double used)
{
    return (float)given != (float)used;
}

} // namespace

const ParamInfo* EffectInfo::findParam(const std::string& key) const
{
    for (const ParamInfo& p : params)
        if (p.name == key) return &p;
    return nullptr;
}

std::string EffectInfo::paramNames() const
{
    std::string out;
    for (const ParamInfo& p : params) out += (out.empty() ? "" : ", ") + p.name;
    return out;
}

EffectRequest::EffectRequest(const EffectInfo& info, std::string origin) : mInfo(&info), mOrigin(std::move(origin))
{
    for (const ParamInfo& p : info.params) {
        Value v;
        parseInto(p, p.defaultText, v);
        mValues[p.name] = v;
    }
}

void EffectRequest::assign(const std::string& assignments)
{
    if (assignments.empty() || assignments == "defaults") return;
    size_t from = 0;
    while (from <= assignments.size()) {
        size_t comma = assignments.find(',', from);
        std::string item = assignments.substr(from, comma == std::string::npos ? std::string::npos : comma - from);
        size_t eq = item.find('=');
        if (eq == std::string::npos)
            throw ToolError::usage(mOrigin + ": '" + item + "' is not key=value (parameters: " +
                                   mInfo->paramNames() + ")");
        set(item.substr(0, eq), item.substr(eq + 1));
        if (comma == std::string::npos) break;
        from = comma + 1;
    }
}

const ParamInfo& EffectRequest::param(const std::string& key) const
{
    std::string k = key == "colour" ? "color" : key;
    if (const ParamInfo* p = mInfo->findParam(k)) return *p;
    throw ToolError::usage(mOrigin + ": unknown parameter '" + key + "' for effect '" + mInfo->name +
                           "'; valid parameters: " + mInfo->paramNames());
}

void EffectRequest::set(const std::string& key, const std::string& text)
{
    const ParamInfo& p = param(key);
    Value& v = mValues[p.name];
    parseInto(p, text, v);
    v.given = true;
}

void EffectRequest::setStops(const std::string& key, std::vector<StopValue> stops)
{
    const ParamInfo& p = param(key);
    if (p.type != ParamType::Stops)
        throw ToolError::usage(mOrigin + ": parameter '" + p.name + "' takes a single value, not a list of stops");
    Value& v = mValues[p.name];
    v.stops = std::move(stops);
    v.given = true;
}

const EffectRequest::Value& EffectRequest::value(const std::string& key) const
{
    return mValues.at(key);
}

void EffectRequest::parseInto(const ParamInfo& p, const std::string& text, Value& v) const
{
    std::string what = mOrigin + " " + p.name;
    switch (p.type) {
    case ParamType::Number: v.number = ValueParser::parseNumber(text, what); break;
    case ParamType::Integer: v.integer = ValueParser::parseInt(text, what); break;
    case ParamType::Colour: v.colour = ValueParser::parseColour(text, what); break;
    case ParamType::Stops: v.stops = ValueParser::parseStops(text, what); break;
    case ParamType::Image: v.text = text; break;
    case ParamType::Choice: {
        for (const ParamChoice& c : p.choices)
            if (c.name == text) {
                v.integer = c.value;
                return;
            }
        std::string names;
        for (const ParamChoice& c : p.choices) names += (names.empty() ? "" : ", ") + c.name;
        try {
            v.integer = ValueParser::parseInt(text, what);
        } catch (const ToolError&) {
            throw ToolError::usage(what + ": '" + text + "' is not one of " + names + " (or a whole number)");
        }
        break;
    }
    }
}

std::vector<std::string> EffectRequest::clampNotes() const
{
    std::vector<std::string> notes;
    const std::string prefix = mOrigin + ": ";
    for (const ParamInfo& p : mInfo->params) {
        const Value& v = mValues.at(p.name);
        if (!v.given) continue;
        if (p.type == ParamType::Number || p.type == ParamType::Integer) {
            double given = p.type == ParamType::Number ? v.number : v.integer;
            double used = applyRule(p.rule, given);
            if (p.rule != ParamRule::None && differs(given, used))
                notes.push_back(prefix + noteFor(p.name, p.rule, given, used));
        } else if (p.type == ParamType::Colour && (v.colour >> 24) != 0xFF) {
            notes.push_back(prefix + p.name + "=" + ValueParser::formatColour(v.colour) +
                            ": its alpha is ignored; the effect's opacity sets it");
        } else if (p.type == ParamType::Stops) {
            if ((int)v.stops.size() > kMaxStops)
                notes.push_back(prefix + "only the first " + std::to_string(kMaxStops) + " of " +
                                std::to_string(v.stops.size()) + " stops are used");
            for (size_t i = 0; i < v.stops.size() && (int)i < kMaxStops; ++i) {
                const StopValue& s = v.stops[i];
                std::string label = p.name + "[" + std::to_string(i + 1) + "]";
                double opacity = applyRule(ParamRule::Opacity, s.opacity);
                if (differs(s.opacity, opacity))
                    notes.push_back(prefix + noteFor(label + " opacity", ParamRule::Opacity, s.opacity, opacity));
                double position = stopPosition(s.position);
                if (differs(s.position, position))
                    notes.push_back(prefix + noteFor(label + " position", ParamRule::Opacity, s.position, position));
            }
        }
    }
    return notes;
}

} // namespace LmTextTool
