#pragma once

// One write to the ledger, all or nothing: commit() makes it last; leaving the scope without commit
// (an error thrown on the way) rolls everything back. The destructor never throws.

#include "ledger/engine/CompanyStore.h"

namespace tillbook::engine {

class Transaction {
public:
    explicit Transaction(CompanyStore& store) : m_store(store) { m_store.beginWrite(); }
    ~Transaction() {
        if (!m_done)
            m_store.rollback();
    }
    Transaction(const Transaction&) = delete;
    Transaction& operator=(const Transaction&) = delete;

    CompanyStore& store() { return m_store; }

    void commit() {
        m_store.commit();
        m_done = true;
    }

private:
    CompanyStore& m_store;
    bool m_done = false;
};

} // namespace tillbook::engine
