#ifndef LMFONTEFFECT_FILTERS_LMGLOW_H
#define LMFONTEFFECT_FILTERS_LMGLOW_H

#include "effect/LmECoreBase.h"
#include "effect/LmGlowProperty.h"
#include "filters/LmGradientTable.h"

#include <memory>
#include <new>

namespace LmFontEffect {

// What the outer and inner glow share: the private copy of the record and its stops, the
// colour table, the spread and the one pipeline both run (grow the mask, blur it at scale
// 128, look each value up in the table). The inner glow runs it on the inverse of the mask.
class LmGlow : public LmECoreBase {
public:
    static const int kTableSize = 257;
    // The glows blur at scale 128 where the shadows use 100.
    static const int kBlurScale = 128;
    // Largest whole size drawn; beyond it the spread and blur would take minutes, so the layer
    // gives up (the effect stack never passes more than 100).
    static const int kMaxSize = 1000;

    ~LmGlow() override;

    LmProperty* getProperty() override;
    // (int)(size + 0.5), saturated.
    int getOffset() override;

    // Fills table[0..256] from the record: the stops (or the colour) along the index, alpha
    // fading to 0 from the fraction `range` of the table on; curve 0 linear, 1 square root,
    // 2 square. All clear without a record or at size 0.
    void makeColorLUT(unsigned int* table, float range, int curve) const;

    // Grows a byte image in place, `passes` times: every inner pixel becomes its 3 x 3 sum
    // divided by 4 (not 9), at most 255. Rows 0 and height - 1 are left alone; the first and
    // last byte of each other row become 0. A failed row allocation skips the spread.
    static void increaseByBoxFilter(unsigned char* image, int passes, int width, int height);

protected:
    // Copies any glow record (including the one held). A stop array too large to copy leaves
    // the layer without a record: it then draws nothing.
    template <class Record> void adopt(LmProperty* p)
    {
        const LmGlowProperty* g = dynamic_cast<const LmGlowProperty*>(p);
        if (!g) return;
        int count = 0;
        std::unique_ptr<LmGradient[]> copy = LmGradientTable::copyStops(*g, &count);
        Record* record = count < 0 ? nullptr : new (std::nothrow) Record(g->size, g->colour, g->opacity,
                                                                         count, copy.get());
        release();
        if (!record) return;
        property = record;
        stops = std::move(copy);
    }

    // The whole post-processing of either glow; inner runs it on the inverse mask, with an
    // opaque white frame. 1 when something was drawn, 0 when it gave up.
    int drawGlow(ParamPostProcessing* pp, bool inner);

    LmGlowProperty* property = nullptr;

private:
    void release();

    std::unique_ptr<LmGradient[]> stops;
};

} // namespace LmFontEffect

#endif
