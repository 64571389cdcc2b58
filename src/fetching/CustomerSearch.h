#pragma once

// Finding customers as a clerk types: by any part of the name or of the customer number, ignoring case and
// accents ("cafe" finds "Café Noir", "ACME" finds "acme01"). The folded text of every customer is made on
// the first search and kept; a search that only lengthens the one before looks among its results alone.

#include "fetching/CustomerList.h"

#include <QByteArray>
#include <QStringView>
#include <cstdint>
#include <string>
#include <vector>

namespace tillbook {

// The text as it is searched: lower case, letters without their accents (ß as ss, æ as ae, ø as o), tabs and
// line breaks as blanks; UTF-8.
QByteArray Fold_SearchText(QStringView text);

class CustomerSearch {
public:
    explicit CustomerSearch(const CustomerList& customers) : m_customers(customers) {}

    // The list positions of the customers whose name or number holds `text`, in list order; every customer
    // for an empty text.
    const std::vector<std::uint32_t>& find(const QString& text);

private:
    void fold();
    bool holds(std::uint32_t position, const QByteArray& folded) const;

    const CustomerList& m_customers;
    std::string m_folded;                // per customer: its name, a tab, its number, a line break
    std::vector<std::uint32_t> m_starts; // where each customer's text begins, and the end
    QByteArray m_lastText;
    std::vector<std::uint32_t> m_found;
    bool m_lastValid = false;
};

} // namespace tillbook
