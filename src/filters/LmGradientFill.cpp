#include "filters/LmGradientFill.h"

#include "effect/LmGradientProperty.h"
#include "filters/LmGradientTable.h"
#include "filters/LmMaskBox.h"

#include <utility>

namespace LmFontEffect {

LmGradientFill::~LmGradientFill() { release(); }

void LmGradientFill::release()
{
    if (property) property->stops = nullptr;
    delete property;
    property = nullptr;
    stops.reset();
}

void LmGradientFill::setProperty(LmProperty* p)
{
    const LmGradientProperty* g = dynamic_cast<const LmGradientProperty*>(p);
    if (!g) return;
    // Built before the old record goes, so that a layer can be given its own record.
    int count = 0;
    std::unique_ptr<LmGradient[]> copy = LmGradientTable::copyStops(*g, &count);
    LmGradientProperty* record = count < 0 ? nullptr : makeRecord(*g);
    release();
    if (!record) return;
    record->stops = copy.get();
    property = record;
    stops = std::move(copy);
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
