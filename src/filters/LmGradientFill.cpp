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
    // Built before the old record goes, so that a layer can be given its own record.
    LmGradientProperty* copy = makeRecord(*g);
    if (copy && g->stops && g->stopCount > 0) {
        LmMaskBox::Block<LmGradient> stops = LmMaskBox::allocate<LmGradient>(g->stopCount, false);
        if (stops) std::memcpy(static_cast<void*>(stops.get()), g->stops, (size_t)g->stopCount * sizeof(LmGradient));
        copy->stops = stops.release();
    }
    release();
    property = copy;
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
