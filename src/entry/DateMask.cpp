#include "entry/DateMask.h"

#include "ledger/Formats.h"

#include <algorithm>
#include <utility>

namespace tillbook {

namespace {

constexpr int KeyBack = 8;

// The 1-based positions of the mask's first two separators (0 where there is none): a position equal to one
// of them means the caret stands just after that separator.
std::pair<int, int> separatorPositions(const QString& mask) {
    int found[2] = {0, 0};
    int count = 0;
    for (int i = 0; i < mask.size() && count < 2; ++i) {
        if (mask[i] != u'_')
            found[count++] = i + 1;
    }
    return {found[0], found[1]};
}

} // namespace

DateKey PressDateKey(int keyAscii, int maskLength, int& datePos, bool& dateTyping) {
    if (keyAscii >= '0' && keyAscii <= '9') {
        ++datePos;
        dateTyping = true;
        if (datePos > maskLength) {
            datePos = maskLength;
            return DateKey::Dropped;
        }
        return DateKey::Typed;
    }
    if (keyAscii == KeyBack) {
        dateTyping = false;
        return DateKey::Typed;
    }
    return DateKey::Refused;
}

MaskedDate FinishDateKey(const QString& text, const QString& mask, int datePos, bool dateTyping) {
    const int length = static_cast<int>(mask.size());
    int pos = std::clamp(datePos, 0, length);
    MaskedDate result;
    if (dateTyping) {
        result.text = text.left(pos) + mask.right(length - pos);
        if (pos < length && pos < result.text.size() && result.text[pos] != u'_')
            ++pos;
    } else {
        const auto [p1, p2] = separatorPositions(mask);
        pos = (pos > 0 && (pos == p1 || pos == p2)) ? pos - 2 : pos - 1;
        pos = std::max(pos, 0);
        result.text = text.left(pos) + mask.mid(pos);
    }
    result.pos = pos;
    return result;
}

bool FitsDateMask(const QString& text, const QString& mask) {
    if (text.size() != mask.size())
        return false;
    for (qsizetype i = 0; i < mask.size(); ++i) {
        const bool place = mask[i] == u'_';
        if (place ? !(text[i] == u'_' || (text[i] >= u'0' && text[i] <= u'9')) : text[i] != mask[i])
            return false;
    }
    return true;
}

MaskedDate ReshapeDate(const QString& text, const QString& mask) {
    MaskedDate result{mask, 0};
    qsizetype place = 0;
    for (const QChar c : text) {
        if (c < u'0' || c > u'9')
            continue;
        while (place < mask.size() && mask[place] != u'_')
            ++place;
        if (place == mask.size())
            break;
        result.text[place++] = c;
        result.pos = static_cast<int>(place);
    }
    if (result.pos > 0 && result.pos < mask.size() && mask[result.pos] != u'_')
        ++result.pos;
    return result;
}

QVariant DateValueOf(const QString& text) {
    const QDate date = ParseShortDate(text);
    if (date.isValid())
        return date;
    return text;
}

} // namespace tillbook
