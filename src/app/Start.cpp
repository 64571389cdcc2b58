#include "app/Start.h"

namespace tillbook {

void Start_Main() {}

} // namespace tillbook
