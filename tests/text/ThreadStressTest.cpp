#include "text/TextTestSupport.h"

#include <atomic>
#include <chrono>
#include <thread>

using namespace LmTest;

namespace {

// Latin with a fallback script each, so that several threads load the same families at once.
const wchar_t* const kTexts[] = {L"Hello \u4E2D\u6587", L"\u041F\u0440\u0438\u0432\u0435\u0442 \u3053\u3093",
                                 L"\u0645\u0631\u062D\u0628\u0627 ab", L"\u05E9\u05DC\u05D5\u05DD \u0393\u03B5"};

// One worker: text objects of its own, created, configured, rendered and dropped until told
// to stop; every few rounds it also registers fonts from bytes under shared names.
void work(int id, const std::vector<unsigned char>& bytes, const std::atomic<bool>& stop, std::atomic<int>& failures)
{
    for (int round = 0; !stop.load(); ++round) {
        LmTextObject object;
        const wchar_t* text = kTexts[(id + round) % 4];
        bool ok = object.Construct() == 1 && object.SetText(text) == 1;
        if (round % 3 == 0) {
            const std::string name = "shared-" + std::to_string(round % 4) + ".ttf";
            ok = ok && object.SetFont(name.c_str(), handOver(bytes, bytes.size()), (unsigned)bytes.size()) == 1;
        } else {
            ok = ok && object.SetFont(kSansPath) == 1;
        }
        LmPaint paint = paintOf(20.0f + (float)(round % 5));
        object.SetPaint(paint);
        object.SetTextStyle(round % 2 == 1, round % 4 == 1);
        object.SetTextColor(0xFF102030u);
        if (round % 2) object.GetEffect()->addOuterShadowText(45.0f, 3.0f, 2.0f, 0xFF000000u, 0.5f);
        giveLines(object, {newLine(2, 30, 0, (int)std::wcslen(text))});
        int w, h;
        ok = ok && object.GetView()->SetSize(200, 50) == 1 && renderWithMargins(object, &w, &h) != nullptr;
        if (!ok) failures.fetch_add(1);
    }
}

} // namespace

// Any number of threads, each with its own text objects, share the font manager and the
// handle table. Rounds start from an empty registry so the fallback families load under
// contention each time.
TEST(ThreadStress, ThreadsWithTheirOwnTextObjectsShareTheFontsSafely)
{
    const std::vector<unsigned char> bytes = readFileBytes(kSansPath);
    std::atomic<int> failures{0};
    for (int round = 0; round < 4; ++round) {
        freshFontManager(true);
        std::atomic<bool> stop{false};
        std::vector<std::thread> threads;
        for (int id = 0; id < 4; ++id) threads.emplace_back(work, id, std::cref(bytes), std::cref(stop), std::ref(failures));
        std::this_thread::sleep_for(std::chrono::milliseconds(600));
        stop = true;
        for (auto& t : threads) t.join();
    }
    EXPECT_EQ(0, failures.load());
    freshFontManager(false);
}
