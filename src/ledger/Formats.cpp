#include "ledger/Formats.h"

#include <QLocale>
#include <QRegularExpression>
#include <limits>

namespace tillbook {

namespace {

// The numeric prefix of a text: sign, digits and at most one decimal point, after leading blanks.
QString numericPrefix(const QString& text) {
    int i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    QString prefix;
    if (i < text.size() && (text[i] == u'-' || text[i] == u'+'))
        prefix += text[i++];
    bool point = false;
    bool digits = false;
    for (; i < text.size(); ++i) {
        if (text[i].isDigit()) {
            prefix += text[i];
            digits = true;
        } else if (text[i] == u'.' && !point) {
            prefix += text[i];
            point = true;
        } else {
            break;
        }
    }
    return digits ? prefix : QString();
}

// Whether a number cut short before `rest` (the digits after the last one kept) goes up by one in the last
// place kept: half to even, `kept` being the number as cut.
bool roundsUp(const QString& rest, std::int64_t kept) {
    if (rest.isEmpty())
        return false;
    const int first = rest[0].digitValue();
    const bool tail = rest.mid(1).contains(QRegularExpression(QStringLiteral("[1-9]")));
    return first > 5 || (first == 5 && (tail || kept % 2 != 0));
}

// The numeric prefix read exactly, to the ledger's thousandths.
Money prefixMoney(const QString& text) {
    QString prefix = numericPrefix(text);
    if (prefix.isEmpty())
        return {};
    const bool negative = prefix.startsWith(u'-');
    if (negative || prefix.startsWith(u'+'))
        prefix.remove(0, 1);
    const qsizetype point = prefix.indexOf(u'.');
    const QString whole = point < 0 ? prefix : prefix.left(point);
    const QString fraction = point < 0 ? QString() : prefix.mid(point + 1);
    if (whole.size() > 15)
        return {};
    std::int64_t value = whole.isEmpty() ? 0 : whole.toLongLong() * Money::Scale;
    value += fraction.left(3).leftJustified(3, u'0').toLongLong();
    if (roundsUp(fraction.mid(3), value))
        ++value;
    return Money::fromThousandths(negative ? -value : value);
}

} // namespace

std::int16_t Int16Of(const QString& text) {
    QString prefix = numericPrefix(text);
    const bool negative = prefix.startsWith(u'-');
    if (negative || prefix.startsWith(u'+'))
        prefix.remove(0, 1);
    const qsizetype point = prefix.indexOf(u'.');
    const QString whole = point < 0 ? prefix : prefix.left(point);
    std::int64_t value = 0;
    for (const QChar digit : whole) {
        value = value * 10 + digit.digitValue();
        if (value > std::numeric_limits<std::int16_t>::max() + 1)
            return 0;
    }
    if (point >= 0 && roundsUp(prefix.mid(point + 1), value))
        ++value;
    if (negative)
        value = -value;
    if (value < std::numeric_limits<std::int16_t>::min() || value > std::numeric_limits<std::int16_t>::max())
        return 0;
    return static_cast<std::int16_t>(value);
}

Money Strip_Commas(const QString& text) {
    QString kept = text;
    kept.remove(u',');
    return prefixMoney(kept);
}

QString FormatAmount(Money amount) {
    const QString plain = amount.toPlainString(2);
    const bool negative = plain.startsWith(u'-');
    const QString digits = negative ? plain.mid(1) : plain;
    const qsizetype point = digits.indexOf(u'.');
    QString whole = digits.left(point);
    for (qsizetype at = whole.size() - 3; at > 0; at -= 3)
        whole.insert(at, u',');
    return (negative ? QStringLiteral("-") : QString()) + whole + digits.mid(point);
}

QString FormatDigits(std::int64_t value, int width) {
    const QString digits = QString::number(value < 0 ? -value : value).rightJustified(width, u'0');
    return value < 0 ? u'-' + digits : digits;
}

QString FormatDateCompact(const QDate& date) {
    return date.toString(QStringLiteral("yyyyMMdd"));
}

QString FormatDateLong(const QDate& date) {
    return QLocale(QLocale::English, QLocale::UnitedStates).toString(date, QStringLiteral("MMMM dd, yyyy"));
}

namespace {

// A form the date field can use: day, month and four-digit year, each read back as written, and every
// date as long as every other (the field's mask has one length).
bool isUsableShortDate(const QString& pattern) {
    const QDate wide(2025, 12, 31), narrow(2001, 2, 3);
    const QString a = wide.toString(pattern), b = narrow.toString(pattern);
    return a.size() == b.size() && QDate::fromString(a, pattern) == wide &&
           QDate::fromString(b, pattern) == narrow;
}

} // namespace

QStringList EnvironmentProblems() {
    QStringList problems;
    const QString shortDate = qEnvironmentVariable("TILLBOOK_SHORT_DATE");
    if (!shortDate.isEmpty() && !isUsableShortDate(shortDate))
        problems << QStringLiteral("TILLBOOK_SHORT_DATE \"%1\" is no usable short date form: it needs the "
                                   "day, the month and the four-digit year, as in MM/dd/yyyy. The system's "
                                   "short date form is used.")
                        .arg(shortDate.left(40));
    const QString today = qEnvironmentVariable("TILLBOOK_TODAY");
    if (!today.isEmpty() && !QDate::fromString(today, Qt::ISODate).isValid())
        problems << QStringLiteral("TILLBOOK_TODAY \"%1\" is no date of the form yyyy-mm-dd. The system's "
                                   "date is used.")
                        .arg(today.left(40));
    return problems;
}

QString ShortDatePattern() {
    const QString fixed = qEnvironmentVariable("TILLBOOK_SHORT_DATE");
    if (!fixed.isEmpty() && isUsableShortDate(fixed))
        return fixed;
    // The locale's order and separator, widened to dd, MM and yyyy so that every date has the same length.
    const QString localePattern = QLocale::system().dateFormat(QLocale::ShortFormat);
    QString pattern;
    QChar separator = u'/';
    QString order;
    for (const QChar c : localePattern) {
        const QChar lower = c.toLower();
        if (lower == u'd' || lower == u'm' || lower == u'y') {
            if (!order.contains(lower))
                order += lower;
        } else if (!order.isEmpty() && order.size() < 3 && !c.isSpace() && c != u'\'') {
            separator = c;
        }
    }
    if (order.size() != 3)
        order = QStringLiteral("mdy");
    for (const QChar part : order) {
        if (!pattern.isEmpty())
            pattern += separator;
        pattern += part == u'd'   ? QStringLiteral("dd")
                   : part == u'm' ? QStringLiteral("MM")
                                  : QStringLiteral("yyyy");
    }
    return pattern;
}

QString FormatShortDate(const QDate& date) {
    return date.toString(ShortDatePattern());
}

QDate ParseShortDate(const QString& text) {
    const QString pattern = ShortDatePattern();
    if (text.trimmed().size() != pattern.size())
        return {};
    return QDate::fromString(text.trimmed(), pattern);
}

QString FormatPlain(Money amount) {
    QString text = amount.toPlainString(3);
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.'))
        text.chop(1);
    return text == u"-0" ? QStringLiteral("0") : text;
}

QString VariantText(const QVariant& value) {
    if (value.metaType() == QMetaType::fromType<Money>())
        return FormatPlain(value.value<Money>());
    if (value.metaType() == QMetaType::fromType<QDate>()) {
        const QDate date = value.toDate();
        return date.isValid() ? FormatShortDate(date) : QString();
    }
    return value.toString();
}

QDate Today() {
    const QString fixed = qEnvironmentVariable("TILLBOOK_TODAY");
    if (!fixed.isEmpty()) {
        const QDate date = QDate::fromString(fixed, Qt::ISODate);
        if (date.isValid())
            return date;
    }
    return QDate::currentDate();
}

} // namespace tillbook
