#include "fetching/NameCollation.h"

namespace tillbook {

QCollator NameCollator() {
    QCollator collator(QLocale(QLocale::English, QLocale::UnitedStates));
    collator.setCaseSensitivity(Qt::CaseInsensitive);
    collator.setNumericMode(false);
    collator.setIgnorePunctuation(false);
    return collator;
}

} // namespace tillbook
