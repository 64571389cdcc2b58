#pragma once

// Finding customers as a clerk types: by any part of the name or of the customer number, ignoring case and
// accents ("cafe" finds "Café Noir", "ACME" finds "acme01"). The folded text of every customer is made once,
// in the background as soon as the search exists, and kept; a search that only lengthens the one before
// looks among its results alone.

#include "fetching/CustomerList.h"

#include <QByteArray>
#include <QStringView>
#include <cstdint>
#include <future>
#include <string>
#include <vector>

namespace tillbook {

// The text as it is searched: lower case, letters without their accents (ß as ss, æ as ae, ø as o), tabs and
// line breaks as blanks; UTF-8.
QByteArray Fold_SearchText(QStringView text);

// The text of every customer as it is searched: per customer its folded name, a tab, its folded number and a
// line break; and where each customer's text begins (and, last, the end).
struct FoldedCustomers {
    std::string text;
    std::vector<std::uint32_t> starts;
};
FoldedCustomers Fold_Customers(const CustomerList& customers);

class CustomerSearch {
public:
    // Starts folding the list's text on a thread of its own, so that the clerk's first key finds it ready.
    explicit CustomerSearch(CustomerList customers);
    ~CustomerSearch(); // waits for the fold, if it is still running
    CustomerSearch(const CustomerSearch&) = delete;
    CustomerSearch& operator=(const CustomerSearch&) = delete;

    // Waits until the list is folded (a search does so itself).
    void waitUntilFolded();
    // The list positions of the customers whose name or number holds `text`, in list order; every customer
    // for an empty text.
    const std::vector<std::uint32_t>& find(const QString& text);

private:
    bool holds(std::uint32_t position, const QByteArray& folded) const;

    const CustomerList m_customers; // shared with the fold while it runs
    FoldedCustomers m_folded;
    QByteArray m_lastText;
    std::vector<std::uint32_t> m_found;
    bool m_lastValid = false;
    std::future<FoldedCustomers> m_folding; // last: waited for before the list it reads goes
};

} // namespace tillbook
