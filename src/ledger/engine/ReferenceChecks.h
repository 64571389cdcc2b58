#pragma once

// The general checks of a verified put: a code that names a customer, bank, distribution code,
// account, fiscal year or period must exist in its view. Blank codes are not checked (not yet chosen).

#include <QVariant>

namespace tillbook::engine {

class ViewCore;

// Fails through the view's session errors, e.g. Customer Number "ZZZ" does not exist.
void checkReference(ViewCore& view, int field, const QVariant& value);

} // namespace tillbook::engine
