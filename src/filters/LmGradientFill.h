#ifndef LMFONTEFFECT_FILTERS_LMGRADIENTFILL_H
#define LMFONTEFFECT_FILTERS_LMGRADIENTFILL_H

#include "effect/LmECoreBase.h"
#include "effect/LmGradient.h"

#include <memory>

namespace LmFontEffect {

class LmGradientProperty;
class LmMaskBox;

// What the linear and radial gradient layers share: a private copy of the gradient record with
// its own stops, and a post-processing that builds the colour table and leaves only the choice
// of table entry per pixel to the kind. Neither adds a margin.
class LmGradientFill : public LmECoreBase {
public:
    ~LmGradientFill() override;

    // Copies any gradient record, clamped again by the kind's record constructor, and its stops.
    // A stop array too large to copy leaves the layer without a record: it then draws nothing.
    void setProperty(LmProperty* p) override;
    LmProperty* getProperty() override;
    // Returns 1 when something was drawn, 0 when it gave up: no record, a scale below 0.1, no
    // stops, a missing bitmap or an empty box.
    int doPostProcessing(ParamPostProcessing* pp) override;

protected:
    // A new record of the kind's type, without stops; null when refused.
    virtual LmGradientProperty* makeRecord(const LmGradientProperty& from) const = 0;
    // Paints the non-empty box from the built 257-entry table; 1, or 0 when refused.
    virtual int paintRamp(const LmMaskBox& box, const unsigned* table) = 0;

    LmGradientProperty* property = nullptr;

private:
    void release();

    std::unique_ptr<LmGradient[]> stops;
};

} // namespace LmFontEffect

#endif
