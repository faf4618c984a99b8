#ifndef LMFONTEFFECT_JNI_LMJNIGUARD_H
#define LMFONTEFFECT_JNI_LMJNIGUARD_H

#include "foundation/Error.h"

namespace LmFontEffect {

// Wraps a native method so that no C++ exception reaches the JVM: memory running out (or a
// library throwing) becomes error code 1 and the method's failure value (false, 0, null).
template <auto F>
struct LmJniGuard;

template <class R, class... Args, R (*F)(Args...)>
struct LmJniGuard<F> {
    static R Call(Args... args)
    {
        try {
            return F(args...);
        } catch (...) {
            Error::Report("LmJni", Error::LM_ERR_PLATFORM, 0);
            return R();
        }
    }
};

} // namespace LmFontEffect

#endif
