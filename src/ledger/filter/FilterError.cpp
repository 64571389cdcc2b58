#include "ledger/filter/Filter.h"

#include <utility>

namespace tillbook::filter {

FilterError::FilterError(QString message, int position)
    : std::runtime_error(message.toStdString()), m_message(std::move(message)), m_position(position) {}

} // namespace tillbook::filter
