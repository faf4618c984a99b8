#ifndef LMTEXT_EFFECTREQUEST_H
#define LMTEXT_EFFECTREQUEST_H

#include "EffectInfo.h"
#include "ValueParser.h"

#include <map>
#include <string>
#include <vector>

namespace LmTextTool {

// One requested effect with every parameter resolved: the defaults, overridden by what the
// user gave. `origin` names where it came from ("--stroke", "scene.json: effects[1]") for
// messages.
class EffectRequest {
public:
    struct Value {
        double number = 0.0;
        int integer = 0;
        unsigned colour = 0;
        std::vector<StopValue> stops;
        std::string text;
        bool given = false;
    };

    EffectRequest(const EffectInfo& info, std::string origin);

    // "key=value,key=value"; an empty string or "defaults" keeps every default.
    void assign(const std::string& assignments);
    // One parameter from its text form; unknown keys and malformed values throw (exit 2).
    void set(const std::string& key, const std::string& text);
    void setStops(const std::string& key, std::vector<StopValue> stops);

    const EffectInfo& info() const { return *mInfo; }
    const std::string& origin() const { return mOrigin; }
    const Value& value(const std::string& key) const;
    float number(const std::string& key) const { return (float)value(key).number; }
    int integer(const std::string& key) const { return value(key).integer; }
    unsigned colour(const std::string& key) const { return value(key).colour; }
    const std::vector<StopValue>& stops(const std::string& key) const { return value(key).stops; }
    const std::string& text(const std::string& key) const { return value(key).text; }

    // What the library will do to the given values, one sentence each ("size=250 is outside
    // 0..100; clamped to 100"). Empty when it takes them as they are.
    std::vector<std::string> clampNotes() const;

private:
    const ParamInfo& param(const std::string& key) const;
    void parseInto(const ParamInfo& p, const std::string& text, Value& v) const;

    const EffectInfo* mInfo;
    std::string mOrigin;
    std::map<std::string, Value> mValues;
};

} // namespace LmTextTool

#endif
