#pragma once

// The cursor of a view: the request for its next page, the page being walked and where it stands.

#include "ledger/engine/ViewCore.h"

namespace tillbook::engine {

struct ViewCore::Cursor {
    PageRequest request;
    Page page;
    size_t next = 0;
    bool exhausted = false;
    bool started = false;
    bool staged = false; // walking the lines its header holds in memory
    bool failed = false; // the browse was refused: it selects nothing
    QString filter;
};

} // namespace tillbook::engine
