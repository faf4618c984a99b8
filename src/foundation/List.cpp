#include "foundation/List.h"

namespace LmFontEffect {

struct ListImpl {
};

List::List() : mImpl(nullptr) {}
List::~List() { delete mImpl; }

} // namespace LmFontEffect
