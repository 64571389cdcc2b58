#pragma once

// Lines of a miscellaneous receipt (AR0043). A verified distribution code must exist and brings its
// revenue account; a verified account must exist, typed with or without the hyphens between its
// segments. When the entry is written, a line without an account takes its code's, and its amount is
// kept in the customer and functional currencies as well. Once the entry is saved, only a line's G/L
// reference and description may change.

#include "ledger/engine/EntryLineRules.h"

namespace tillbook::engine {

class MiscLineRules final : public EntryLineRules {
public:
    MiscLineRules();
    void initRecord(ViewCore& view) override;
    void checkPut(ViewCore& view, int field, const QVariant& value) override;
    void beforeInsert(ViewCore& view) override;
};

} // namespace tillbook::engine
