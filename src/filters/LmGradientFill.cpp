#include "filters/LmGradientFill.h"

#include "effect/LmGradientProperty.h"
#include "filters/LmGradientTable.h"
#include "filters/LmMaskBox.h"

#include <cstring>

namespace LmFontEffect {

LmGradientFill::~LmGradientFill() { release(); }

void LmGradientFill::release()
{
    if (!property) return;
    std::free(property->stops);
    property->stops = nullptr;
    delete property;
    property = nullptr;
}

void LmGradientFill::setProperty(LmProperty* p)
{
    const LmGradientProperty* g = dynamic_cast<const LmGradientProperty*>(p);
    if (!g) return;
    release();
    property = makeRecord(*g);
    if (!property || !g->stops || g->stopCount <= 0) return;
    LmMaskBox::Block<LmGradient> copy = LmMaskBox::allocate<LmGradient>(g->stopCount, false);
    if (copy) std::memcpy(static_cast<void*>(copy.get()), g->stops, (size_t)g->stopCount * sizeof(LmGradient));
    property->stops = copy.release();
}

LmProperty* LmGradientFill::getProperty() { return property; }

int LmGradientFill::doPostProcessing(ParamPostProcessing* pp)
{
    LmMaskBox box;
    if (!property || property->scale < 0.1 || !box.take(pp) || box.width() == 0 || box.height() == 0) return 0;
    unsigned table[LmGradientTable::kEntries];
    if (!LmGradientTable::build(table, property->stops, property->stopCount)) return 0;
    return paintRamp(box, table);
}

} // namespace LmFontEffect
